# SeluVorneDS — the everyday commands. `make help` lists them.

BUILD      ?= build
ASAN_BUILD ?= build-asan
JOBS       ?= $(shell nproc)
CMAKE_ARGS ?=

.PHONY: help setup build test demo bench asan stress crash format clean

help:
	@echo "make demo    set up, build and run the demo tour"
	@echo "make test    set up, build and run every test (C++ and Python)"
	@echo "make bench   build and run the benchmarks (Release)"
	@echo "make asan    build and run the tests under AddressSanitizer + UBSan"
	@echo "make stress  racing clients on one floor (processes and threads), 100 trials"
	@echo "make crash   a writer killed at random points, 100 trials"
	@echo "make format  format the sources with clang-format"
	@echo "make setup   install the Debian packages the project needs"
	@echo "make clean   remove the build folders"

setup:
	@scripts/setup.sh

$(BUILD)/build.ninja: | setup
	cmake -S . -B $(BUILD) -G Ninja $(CMAKE_ARGS)

build: setup $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

demo: build
	$(BUILD)/demo/seluvorne_demo

bench: setup
	cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DSELUVORNE_TESTS=OFF
	cmake --build build-bench -j $(JOBS)
	@for b in build-bench/bench/*_bench; do echo "== $$b"; $$b; done

asan: setup
	cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DSELUVORNE_SANITIZE=ON
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	ctest --test-dir $(ASAN_BUILD) --output-on-failure -j $(JOBS) -LE python

# The long runs of the tools `make test` runs with small counts (label stress).
stress: build
	PYTHONPATH=$(BUILD)/python /usr/bin/python3 tests/stress/stress.py 100

crash: build
	PYTHONPATH=$(BUILD)/python /usr/bin/python3 tests/stress/crash.py 100

format:
	git ls-files --cached --others --exclude-standard '*.cpp' '*.h' | xargs -r clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) build-bench
