#include "netkit/verdict/state_equation.h"

#include <z3++.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>

namespace siphons {

namespace {

/// A condition M(p) <= tokens or, with `atLeast`, M(p) >= tokens.
struct Condition {
  int32_t place = 0;
  bool atLeast = false;
  int64_t tokens = 0;
  auto operator<=>(const Condition&) const = default;
};

/// Joined by "or". Ordered, one condition per place and direction.
using Clause = std::vector<Condition>;

/// Whether tokens and nothing else hold the transition up.
bool ArcsSayAll(const Transition& transition) {
  const auto dependent = [](const Arc& arc) { return arc.markingDependent; };
  return !transition.enablingFunction &&
         std::none_of(transition.inputs.begin(), transition.inputs.end(), dependent) &&
         std::none_of(transition.outputs.begin(), transition.outputs.end(), dependent) &&
         std::none_of(transition.inhibitors.begin(), transition.inhibitors.end(), dependent);
}

Clause HeldUp(const Transition& transition) {
  Clause clause;
  for (const Arc& arc : transition.inputs) clause.push_back({arc.place, false, arc.weight - 1});
  for (const Arc& arc : transition.inhibitors) clause.push_back({arc.place, true, arc.weight});
  std::sort(clause.begin(), clause.end());
  return clause;
}

bool Implies(const Condition& a, const Condition& b) {
  return a.place == b.place && a.atLeast == b.atLeast &&
         (a.atLeast ? a.tokens >= b.tokens : a.tokens <= b.tokens);
}

/// Whether each condition of the one implies one of the other.
bool Implies(const Clause& a, const Clause& b) {
  return std::all_of(a.begin(), a.end(), [&b](const Condition& condition) {
    return std::any_of(b.begin(), b.end(), [&](const Condition& other) { return Implies(condition, other); });
  });
}

/// The clauses that no other one implies.
std::vector<Clause> Strongest(std::vector<Clause> clauses, size_t placeCount) {
  std::sort(clauses.begin(), clauses.end(), [](const Clause& a, const Clause& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  });
  clauses.erase(std::unique(clauses.begin(), clauses.end()), clauses.end());
  std::vector<std::vector<size_t>> atPlace(placeCount);  // of the clauses kept, by first place
  std::vector<Clause> kept;
  for (const Clause& clause : clauses) {
    const bool implied = std::any_of(clause.begin(), clause.end(), [&](const Condition& condition) {
      const auto& others = atPlace[static_cast<size_t>(condition.place)];
      return std::any_of(others.begin(), others.end(),
                         [&](size_t other) { return Implies(kept[other], clause); });
    });
    if (implied) continue;
    if (!clause.empty()) atPlace[static_cast<size_t>(clause.front().place)].push_back(kept.size());
    kept.push_back(clause);
  }
  return kept;
}

StateEquation::Answer AnswerOf(z3::check_result result) {
  return result == z3::unsat ? StateEquation::Answer::kNoSolution
         : result == z3::sat ? StateEquation::Answer::kSolution
                             : StateEquation::Answer::kUnknown;
}

int64_t RoundedUp(const z3::expr& number) {
  int64_t numerator = 0, denominator = 1;
  if (!Z3_get_numeral_rational_int64(number.ctx(), number, &numerator, &denominator)) {
    constexpr int64_t kMany = int64_t{1} << 62;
    return kMany;
  }
  return numerator / denominator + (numerator % denominator > 0 ? 1 : 0);
}

}  // namespace

struct StateEquation::Z3 {
  Z3(Numbers n, Search search) : numbers(n), solver(context, z3::solver::simple()) {
    z3::params params(context);
    params.set("ctrl_c", false);
    params.set("random_seed", 0U);
    if (search == Search::kEverything) params.set("relevancy", 0U);
    solver.set(params);
  }

  z3::expr Number(int64_t value) {
    return numbers == Numbers::kWhole ? context.int_val(value) : context.real_val(value);
  }
  z3::expr Unknown(const char* prefix, size_t number) {
    const std::string name = prefix + std::to_string(number);
    return numbers == Numbers::kWhole ? context.int_const(name.c_str()) : context.real_const(name.c_str());
  }
  /// What the model says about an unknown; 0 where it says nothing.
  static int64_t ValueIn(const z3::model& model, const z3::expr& unknown) {
    const z3::func_decl name = unknown.decl();
    return model.has_interp(name) ? RoundedUp(model.get_const_interp(name)) : 0;
  }
  z3::expr Express(const Condition& condition) {
    const z3::expr tokens = marking[static_cast<size_t>(condition.place)];
    return condition.atLeast ? tokens >= Number(condition.tokens) : tokens <= Number(condition.tokens);
  }
  z3::expr Express(const FiringCondition& condition) {
    z3::expr_vector any(context);
    const auto firingsOf = [this](int32_t t) {
      return firings[static_cast<size_t>(columnOf[static_cast<size_t>(t)])];
    };
    if (condition.kind == FiringCondition::Kind::kTrap) {
      for (const int32_t p : condition.places) any.push_back(Express({p, true, 1}));
    }
    for (const int32_t t : condition.breakers) any.push_back(firingsOf(t) > Number(0));
    if (condition.cause >= 0) any.push_back(firingsOf(condition.cause) <= Number(0));
    return z3::mk_or(any);
  }

  Numbers numbers;
  z3::context context;
  z3::solver solver;
  std::vector<z3::expr> marking;            ///< by place
  std::vector<z3::expr> firings;            ///< by different change
  std::vector<std::vector<int32_t>> alike;  ///< transitions by place in `firings`
  std::vector<int32_t> columnOf;  ///< by transition: its place in `firings`, or -1 where it changes nothing
};

StateEquation::StateEquation(const PetriNet& net, Numbers numbers, Search search)
    : net_(net), z3_(std::make_unique<Z3>(numbers, search)) {
  std::vector<bool> unusable(net.places.size());
  std::vector<z3::expr_vector> sums;
  for (size_t p = 0; p < net.places.size(); ++p) {
    z3_->marking.push_back(z3_->Unknown("m", p));
    sums.emplace_back(z3_->context);
  }
  std::map<std::map<int32_t, int64_t>, int32_t> columns;
  for (const Transition& transition : net.transitions) {
    std::map<int32_t, int64_t> change;
    for (const Arc& arc : transition.inputs) change[arc.place] -= arc.weight;
    for (const Arc& arc : transition.outputs) change[arc.place] += arc.weight;
    for (const std::vector<Arc>* arcs : {&transition.inputs, &transition.outputs}) {
      for (const Arc& arc : *arcs) {
        if (arc.markingDependent) unusable[static_cast<size_t>(arc.place)] = true;
      }
    }
    std::erase_if(change, [](const auto& entry) { return entry.second == 0; });
    if (change.empty()) {
      z3_->columnOf.push_back(-1);
      continue;
    }
    const auto [column, isNew] = columns.emplace(std::move(change), static_cast<int32_t>(columns.size()));
    z3_->columnOf.push_back(column->second);
    if (isNew) z3_->alike.emplace_back();
    z3_->alike[static_cast<size_t>(column->second)].push_back(static_cast<int32_t>(z3_->columnOf.size()) - 1);
    if (!isNew) continue;
    const z3::expr firings = z3_->Unknown("f", z3_->firings.size());
    z3_->solver.add(firings >= z3_->Number(0));
    z3_->firings.push_back(firings);
    for (const auto& [place, tokens] : column->first) {
      sums[static_cast<size_t>(place)].push_back(z3_->Number(tokens) * firings);
    }
  }
  for (size_t p = 0; p < net.places.size(); ++p) {
    const z3::expr tokens = z3_->marking[p];
    z3_->solver.add(tokens >= z3_->Number(0));
    if (unusable[p] || numbers == Numbers::kNoEquation) continue;
    sums[p].push_back(z3_->Number(net.places[p].tokens));
    z3_->solver.add(tokens == z3::sum(sums[p]));
  }
}

StateEquation::~StateEquation() = default;

void StateEquation::RequireDead() {
  std::vector<Clause> clauses;
  for (const Transition& transition : net_.transitions) {
    if (ArcsSayAll(transition)) clauses.push_back(HeldUp(transition));
  }
  clauses = Strongest(std::move(clauses), net_.places.size());
  for (const Clause& clause : clauses) {
    z3::expr_vector conditions(z3_->context);
    for (const Condition& condition : clause) conditions.push_back(z3_->Express(condition));
    z3_->solver.add(z3::mk_or(conditions));
  }
}

void StateEquation::RequireAtMost(int32_t place, int64_t most) {
  z3_->solver.add(z3_->Express({place, false, most}));
}

void StateEquation::Require(const FiringCondition& condition) {
  z3_->solver.add(z3_->Express(condition));
}

const std::vector<int32_t>& StateEquation::Alike(int32_t transition) const {
  return z3_->alike[static_cast<size_t>(z3_->columnOf[static_cast<size_t>(transition)])];
}

void StateEquation::Push() {
  z3_->solver.push();
}

void StateEquation::Pop() {
  z3_->solver.pop();
}

StateEquation::Answer StateEquation::Solve(int64_t steps, const std::function<bool()>& stop) {
  return Check(steps, stop, [this] { return AnswerOf(z3_->solver.check()); });
}

StateEquation::Answer StateEquation::SolveWith(const std::vector<FiringCondition>& conditions,
                                               std::vector<size_t>& needed, int64_t steps,
                                               const std::function<bool()>& stop) {
  z3::expr_vector assumed(z3_->context);
  z3_->solver.push();
  for (const FiringCondition& condition : conditions) {
    const std::string name = "c" + std::to_string(assumed.size());
    assumed.push_back(z3_->context.bool_const(name.c_str()));
    z3_->solver.add(z3::implies(assumed.back(), z3_->Express(condition)));
  }
  const Answer answer = Check(steps, stop, [&] { return AnswerOf(z3_->solver.check(assumed)); });
  if (answer == Answer::kNoSolution) {
    std::set<std::string> core;
    for (const z3::expr& condition : z3_->solver.unsat_core()) core.insert(condition.decl().name().str());
    needed.clear();
    for (size_t i = 0; i < conditions.size(); ++i) {
      if (core.count("c" + std::to_string(i)) > 0) needed.push_back(i);
    }
  }
  z3_->solver.pop();
  return answer;
}

/// What `ask` says within so many steps, while another thread asks whether to stop.
StateEquation::Answer StateEquation::Check(int64_t steps, const std::function<bool()>& stop,
                                           const std::function<Answer()>& ask) {
  constexpr auto kBetweenQuestions = std::chrono::milliseconds(20);
  if (stop()) return Answer::kUnknown;
  z3_->solver.set("rlimit", static_cast<unsigned>(std::min<int64_t>(steps, UINT32_MAX)));
  std::mutex mutex;
  std::condition_variable ended;
  bool done = false;
  std::thread watch([&] {
    std::unique_lock lock(mutex);
    while (!ended.wait_for(lock, kBetweenQuestions, [&done] { return done; })) {
      if (stop()) z3_->context.interrupt();
    }
  });
  Answer answer = Answer::kUnknown;
  try {
    answer = ask();
  } catch (const z3::exception&) {  // the solver gave up: unknown
  }
  {
    const std::lock_guard lock(mutex);
    done = true;
  }
  ended.notify_one();
  watch.join();
  return answer;
}

int64_t StateEquation::Steps() const {
  const z3::stats statistics = z3_->solver.statistics();
  for (unsigned i = 0; i < statistics.size(); ++i) {
    if (statistics.key(i) == "rlimit count") return statistics.uint_value(i);
  }
  return 0;
}

PlaceList StateEquation::EmptyPlaces() {
  const z3::model model = z3_->solver.get_model();
  PlaceList empty;
  for (size_t p = 0; p < z3_->marking.size(); ++p) {
    if (Z3::ValueIn(model, z3_->marking[p]) == 0) empty.push_back(static_cast<int32_t>(p));
  }
  return empty;
}

Candidate StateEquation::Solution() {
  const z3::model model = z3_->solver.get_model();
  Candidate candidate;
  for (const z3::expr& tokens : z3_->marking) candidate.marking.push_back(Z3::ValueIn(model, tokens));
  std::vector<int64_t> firings;
  for (const z3::expr& count : z3_->firings) firings.push_back(Z3::ValueIn(model, count));
  for (const int32_t column : z3_->columnOf) {
    candidate.firings.push_back(column < 0 ? 0 : firings[static_cast<size_t>(column)]);
  }
  return candidate;
}

}  // namespace siphons
