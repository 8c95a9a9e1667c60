# A thin front of CMake: `make run` and `make test` do all of their own set-up.
# Not taken from the environment: users of the program have a MODELDIR of their own there.
NET = philosophers
MODELDIR = $(CURDIR)/examples
JOBS := $(shell nproc 2>/dev/null || echo 1)

# Kept between runs, although only pattern rules name them.
.SECONDARY: build/release/CMakeCache.txt build/debug/CMakeCache.txt build/asan/CMakeCache.txt \
  build/coverage/CMakeCache.txt

.PHONY: all run test bench asan fuzz coverage lint format format-check clean

all: build/release/CMakeCache.txt
	@cmake --build --preset release -j $(JOBS)

# The report of NET, which is written beside the net.
run:
	@scripts/setup build
	@$(MAKE) -s --no-print-directory build/release/CMakeCache.txt
	@cmake --build --preset release -j $(JOBS) --target siphons netkit -- --no-print-directory
	@MODELDIR='$(MODELDIR)' build/release/siphons '$(NET)'
	@cat '$(MODELDIR)/$(NET).siphons'

test:
	@scripts/setup test
	@$(MAKE) --no-print-directory test-debug

# The fast solver against the plain one, and netkit's enumeration against clingo's, each in one run.
bench:
	@scripts/setup bench
	@cmake --preset release -DSIPHONS_BENCH=ON >/dev/null
	@cmake --build --preset release -j $(JOBS) --target bench_solver bench_enumeration
	@build/release/bench/bench_solver --benchmark_counters_tabular=true
	@build/release/bench/bench_enumeration --benchmark_counters_tabular=true

# Each fuzz target for TIME seconds, two at a time.
TIME = 60
fuzz:
	@scripts/setup fuzz
	@cmake --preset fuzz >/dev/null
	@cmake --build --preset fuzz -j $(JOBS) --target fuzzers -- --no-print-directory
	@scripts/fuzz $(TIME)

asan:
	@scripts/setup test
	@$(MAKE) --no-print-directory test-asan

test-%: build/%/CMakeCache.txt
	@cmake --build --preset $* -j $(JOBS) -- --no-print-directory
	@ctest --preset $* -j $(JOBS)

build/%/CMakeCache.txt: CMakeLists.txt CMakePresets.json tests/CMakeLists.txt
	@cmake --preset $* >/dev/null
	@touch $@

SOURCES := $(shell git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
format:
	@clang-format -i $(SOURCES)
format-check:
	@scripts/setup check
	@clang-format --dry-run -Werror $(SOURCES)

# Which lines the tests run, by gcovr.cfg. Counts of an earlier run would add up.
coverage:
	@scripts/setup coverage
	@find build/coverage -name '*.gcda' -delete 2>/dev/null || true
	@$(MAKE) --no-print-directory test-coverage
	@gcovr -j $(JOBS) build/coverage

# Static checks: cppcheck and clang-tidy over every source.
lint:
	@scripts/setup check
	@cmake --preset lint >/dev/null
	@scripts/lint $(JOBS)

clean:
	@rm -rf build
