// The programs differ in the place only whose weight is 1, so one solver keeps the rows, which are short: a
// transition increases a weighting by the weights of its outputs minus those of its inputs. A place within a
// state machine with one token has the bound 1 by a weighting of ones; the solver finds these at once. The
// memory is that of the arcs; the time grows with the square of the places in practice.
#include "netkit/model/structural_bounds.h"

#include <z3++.h>

#include <limits>
#include <map>
#include <string>

namespace siphons {

namespace {

/// Resource units of the solver for one place, so that the answer does not depend on the machine.
constexpr unsigned kEffort = 20'000'000;

class Programs {
 public:
  explicit Programs(const PetriNet& net) : optimize_(context_) {
    z3::params parameters(context_);
    parameters.set("rlimit", kEffort);
    optimize_.set(parameters);
    for (size_t p = 0; p < net.places.size(); ++p) {
      weights_.push_back(context_.real_const(("y" + std::to_string(p)).c_str()));
      optimize_.add(weights_.back() >= 0);
    }
    for (const Transition& transition : net.transitions) AddRow(transition);
    z3::expr_vector terms(context_);
    for (size_t p = 0; p < net.places.size(); ++p) {
      if (net.places[p].tokens > 0) terms.push_back(weights_[p] * Number(net.places[p].tokens));
    }
    tokens_ = terms.empty() ? context_.real_val(0) : z3::sum(terms);
  }

  /// The least bound of the place; `known` is false when the solver gave up.
  std::optional<int64_t> BoundOf(size_t place, bool& known) {
    optimize_.push();
    optimize_.add(weights_[place] == 1);
    const z3::optimize::handle objective = optimize_.minimize(*tokens_);
    const z3::check_result result = optimize_.check();
    std::optional<int64_t> bound;
    known = result != z3::unknown;
    if (result == z3::sat) {
      const z3::expr least = optimize_.lower(objective);
      int64_t value = 0;
      // The bound of a whole number of tokens is the whole part.
      const z3::expr whole = z3::expr(context_, Z3_mk_real2int(context_, least)).simplify();
      if (whole.is_numeral_i64(value)) bound = value;
      if (!bound) known = false;
    }
    optimize_.pop();
    return bound;
  }

 private:
  z3::expr Number(int64_t value) { return context_.real_val(std::to_string(value).c_str()); }

  void AddRow(const Transition& transition) {
    std::map<int32_t, int64_t> change;
    for (const Arc& arc : transition.outputs) {
      if (arc.markingDependent) optimize_.add(weights_[static_cast<size_t>(arc.place)] == 0);
      if (!arc.markingDependent) change[arc.place] += arc.weight;
    }
    for (const Arc& arc : transition.inputs) {
      if (!arc.markingDependent) change[arc.place] -= arc.weight;
    }
    z3::expr_vector terms(context_);
    for (const auto& [place, difference] : change) {
      if (difference != 0) terms.push_back(weights_[static_cast<size_t>(place)] * Number(difference));
    }
    if (!terms.empty()) optimize_.add(z3::sum(terms) <= 0);
  }

  z3::context context_;
  z3::optimize optimize_;
  std::vector<z3::expr> weights_;
  std::optional<z3::expr> tokens_;
};

}  // namespace

StructuralBounds BoundsOf(const PetriNet& net, const std::function<bool()>& stop) {
  StructuralBounds result;
  result.bounds.resize(net.places.size());
  Programs programs(net);
  for (size_t p = 0; p < net.places.size(); ++p) {
    if (stop()) {
      result.complete = false;
      break;
    }
    bool known = true;
    result.bounds[p] = programs.BoundOf(p, known);
    if (!known) result.complete = false;
  }
  return result;
}

}  // namespace siphons
