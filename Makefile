# A thin front of CMake: `make run` and `make test` do all of their own set-up.
# Not taken from the environment: users of the program have a MODELDIR of their own there.
NET = philosophers
MODELDIR = $(CURDIR)/examples
JOBS := $(shell nproc 2>/dev/null || echo 1)

.PHONY: all run install package check-package test test-page asan bench fuzz coverage lint lint-quick format format-check clean

# Both programs, optimised, without tests, and what netkit says of itself.
all: build/release/CMakeCache.txt
	@cmake --build --preset release -j $(JOBS) --target siphons described_by_netkit -- --no-print-directory

# Installs them, their man pages, documents, examples and completions.
PREFIX = /usr/local
DESTDIR =
install: all
	@DESTDIR='$(DESTDIR)' cmake --install build/release --prefix '$(PREFIX)'

# The Debian package, in build/release/package; check-package tries it in a root of its own.
package:
	@scripts/setup package
	@cmake --preset release -DBUILD_TESTING=OFF >/dev/null
	@cmake --build --preset release -j $(JOBS) --target package -- -s --no-print-directory
check-package:
	@scripts/setup package
	@cmake --preset release -DBUILD_TESTING=OFF >/dev/null
	@scripts/check-package $(JOBS)

# The report of NET, computed and kept in build/reports.
run: build/release/CMakeCache.txt
	@cmake --build --preset release -j $(JOBS) --target siphons netkit -- -s --no-print-directory
	@scripts/run build/release '$(MODELDIR)' '$(NET)'

build/release/CMakeCache.txt: CMakeLists.txt CMakePresets.json
	@scripts/setup build
	@cmake --preset release -DBUILD_TESTING=OFF >/dev/null
	@touch $@

# The page that netkit draw writes, in a browser.
test-page: all
	@scripts/setup page
	@python3 -B tests/page/page_test.py build/release/netkit examples

test: test-debug
asan: test-asan
test-%:
	@scripts/setup test
	@cmake --preset $* >/dev/null
	@cmake --build --preset $* -j $(JOBS) -- --no-print-directory
	@ctest --preset $* -j $(JOBS)

# The programs as another preset builds them: clang, alone.
build-%:
	@scripts/setup $*
	@cmake --preset $* >/dev/null
	@cmake --build --preset $* -j $(JOBS) -- --no-print-directory

# The fast solver against the plain one, small nets against large ones in the reader, and netkit's enumeration against
# clingo's, each in one run.
bench:
	@scripts/setup bench
	@cmake --preset release -DBUILD_TESTING=OFF -DSIPHONS_BENCH=ON >/dev/null
	@cmake --build --preset release -j $(JOBS) --target bench_solver bench_loader bench_enumeration
	@build/release/bench/bench_solver --benchmark_counters_tabular=true
	@build/release/bench/bench_loader --benchmark_counters_tabular=true
	@build/release/bench/bench_enumeration --benchmark_counters_tabular=true

# Each fuzz target for TIME seconds, two at a time.
TIME = 60
fuzz:
	@scripts/setup fuzz
	@cmake --preset fuzz >/dev/null
	@cmake --build --preset fuzz -j $(JOBS) --target fuzzers -- --no-print-directory
	@scripts/fuzz $(TIME)

SOURCES = $(shell find src tests fuzz bench -name '*.cpp' -o -name '*.h')
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

# Static checks: cppcheck and clang-tidy over every source; lint-quick leaves out clang-tidy, which takes many minutes.
lint:
	@scripts/setup check
	@cmake --preset lint >/dev/null
	@scripts/lint $(JOBS)
lint-quick:
	@scripts/setup check
	@scripts/lint $(JOBS) quick

clean:
	@rm -rf build
