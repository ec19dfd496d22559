# SeluVorneDS — the everyday commands. `make help` lists them.

BUILD      ?= build
ASAN_BUILD ?= build-asan
JOBS       ?= $(shell nproc)
CMAKE_ARGS ?=
PREFIX     ?= /usr/local
# What `make demo` builds: only what the tour runs, not the tests.
DEMO_TARGETS := seluvorne_demo

.PHONY: help setup build test demo bench asan format install clean

help:
	@echo "make demo     set up, build only the demo and run its tour"
	@echo "make build    set up and build everything (library, Python module, tests, benchmarks)"
	@echo "make test     set up, build and run every test (C++, Python, installed package, README)"
	@echo "make bench    build and run the benchmarks (Release)"
	@echo "make asan     build and run the tests under AddressSanitizer + UBSan"
	@echo "make install  build and install the library, headers, CMake package and Python module"
	@echo "              into PREFIX (default /usr/local): make install PREFIX=/opt/seluvorne"
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
	$(BUILD)/demo/seluvorne_demo

install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

bench: setup
	cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DSELUVORNE_TESTS=OFF
	cmake --build build-bench -j $(JOBS)
	@for b in build-bench/bench/*_bench; do echo "== $$b"; $$b; done

asan: setup
	cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DSELUVORNE_SANITIZE=ON
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	ctest --test-dir $(ASAN_BUILD) --output-on-failure -j $(JOBS) -LE python

format:
	git ls-files --cached --others --exclude-standard '*.cpp' '*.h' | xargs -r clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) build-bench
