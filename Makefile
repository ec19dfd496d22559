# SeluVorneDS — the everyday commands. `make help` lists them.

BUILD      ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
MUTANTS_SEED  ?= 20261125
MUTANTS_COUNT ?= 300
JOBS       ?= $(shell nproc)
CMAKE_ARGS ?=
PREFIX     ?= /usr/local
# What `make demo` builds: only what the tour runs, not the tests.
DEMO_TARGETS := seluvorne_command seluvorne-jet-reader

.PHONY: help setup build test demo bench asan stress crash crash-pages fuzz format install mutants clean

help:
	@echo "make demo     set up, build only the command and run its tour on a sample floor"
	@echo "make build    set up and build everything (library, command, Python module, tests, benchmarks)"
	@echo "make test     set up, build and run every test (C++, Python, command, installed package, README)"
	@echo "make bench    build and run the benchmarks (Release; medians of 5 interleaved runs)"
	@echo "make asan     build and run the tests under AddressSanitizer + UBSan"
	@echo "make install  build and install the library, headers, CMake package, command and Python module"
	@echo "              into PREFIX (default /usr/local): make install PREFIX=/opt/seluvorne"
	@echo "make stress   racing clients on one floor (processes and threads), 100 trials (not in CI)"
	@echo "make crash    a writer killed at random points, 100 trials (10 in make test)"
	@echo "make fuzz     fuzz the Jet reader's stream parser for FUZZ_SECONDS (default 60; not in CI)"
	@echo "make crash-pages  kill writers, WriteDB and page copies 200 times each (not in CI)"
	@echo "make mutants  mutation testing: which test cases catch which faults (MUTANTS_SEED, MUTANTS_COUNT;"
	@echo "              resumes where it stopped; hours: nohup make mutants &; see docs/testing.md)"
	@echo "make format   format the sources with clang-format"
	@echo "make setup    install the Debian packages the project needs"
	@echo "make clean    remove the build folders"

setup:
	@scripts/setup.sh

$(BUILD)/build.ninja: | setup
	cmake -S . -B $(BUILD) -G Ninja $(CMAKE_ARGS)

build: setup $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

demo: setup $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS) --target $(DEMO_TARGETS)
	demo/tour.sh $(BUILD)

install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

# Each benchmark runs BENCH_REPETITIONS times, interleaved at random with the
# others, and is reported by its median, so that engine / raw ratios hold
# steady on a busy machine.
BENCH_REPETITIONS ?= 5
BENCH_ARGS ?= --benchmark_repetitions=$(BENCH_REPETITIONS) \
	--benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=true \
	--benchmark_min_time=0.2

bench: setup
	cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DSELUVORNE_TESTS=OFF
	cmake --build build-bench -j $(JOBS)
	@for b in build-bench/bench/*_bench; do echo "== $$b"; $$b $(BENCH_ARGS); done

# The Python-driven tests do not run under the sanitizers, so the module is
# not built there either.
asan: setup
	cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DSELUVORNE_SANITIZE=ON \
	  -DSELUVORNE_PYTHON=OFF
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	ctest --test-dir $(ASAN_BUILD) --output-on-failure -j $(JOBS) -LE python

# Seeds: the streams the Jet reader writes for the fixtures. Crashes land in
# $(FUZZ_BUILD)/crashes; each becomes a fixture and a regression test.
fuzz: setup
	cmake -S . -B $(FUZZ_BUILD) -G Ninja -DSELUVORNE_FUZZ=ON \
	  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(FUZZ_BUILD) -j $(JOBS)
	@mkdir -p $(FUZZ_BUILD)/corpus $(FUZZ_BUILD)/crashes
	@for f in $$(find tests/fixtures/jet -name '*.mdb' -o -name '*.MDB'); do \
	  $(FUZZ_BUILD)/tools/jet-reader/seluvorne-jet-reader $$f \
	    > $(FUZZ_BUILD)/corpus/$$(echo $$f | tr / _).stream 2>/dev/null || true; done
	cp tests/fixtures/jet/fuzz/*.stream $(FUZZ_BUILD)/corpus/ 2>/dev/null || true
	$(FUZZ_BUILD)/fuzz/jet_stream_fuzz -max_total_time=$(FUZZ_SECONDS) -max_len=8192 \
	  -artifact_prefix=$(FUZZ_BUILD)/crashes/ $(FUZZ_BUILD)/corpus

crash-pages: build
	SELUVORNE_CRASH_ROUNDS=200 $(BUILD)/tests/store/page_crash_tests

# The long runs of the tools `make test` runs with small counts (label stress).
stress: build
	PYTHONPATH=$(BUILD)/python /usr/bin/python3 tests/stress/stress.py 100

crash: build
	PYTHONPATH=$(BUILD)/python /usr/bin/python3 tests/stress/crash.py 100

mutants: setup
	nice /usr/bin/python3 tools/mutants/mutants.py run --seed $(MUTANTS_SEED) --count $(MUTANTS_COUNT)

format:
	git ls-files --cached --others --exclude-standard '*.cpp' '*.h' | xargs -r clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD) build-bench build-mutants
