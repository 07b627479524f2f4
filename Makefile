# Wraps CMake for the two everyday commands: `make demo` and `make test`.
BUILD ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
# Extra options for a fresh configuration, e.g. CMAKE_FLAGS=-DORMIDA_WERROR=ON.
CMAKE_FLAGS ?=
# The sanitized suite runs as this many gtest shards, so every core has work.
SANITIZE_SHARDS ?= $(JOBS)

.PHONY: all deps configure build demo test bench sanitize-build sanitize deb clean mutants

all: build

deps:
	@tools/install-deps

configure: deps
	@test -f $(BUILD)/build.ninja || cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) $(CMAKE_FLAGS)

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

demo: build
	@tools/demo $(BUILD)

test: build
	@ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS) --timeout 300

bench: build
	@$(BUILD)/ormida_bench

# The Debian package of the library, its header, pkg-config and CMake files and the tool.
deb: build
	@cd $(BUILD) && cpack -G DEB

# Benchmarks measure the optimised build only; under the sanitizers they would just cost time.
sanitize-build: deps
	@test -f build-asan/build.ninja || cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug \
	  -DORMIDA_SANITIZE=ON -DORMIDA_BUILD_BENCH=OFF -DORMIDA_TEST_SHARDS=$(SANITIZE_SHARDS) $(CMAKE_FLAGS)
	@cmake --build build-asan -j $(JOBS)

sanitize: sanitize-build
	@ctest --test-dir build-asan --output-on-failure -j $(JOBS) --timeout 900

# Plants the faults of tools/mutants.txt one by one and checks that the tests catch each.
# Slow (one rebuild and suite run per fault), so not part of CI.
mutants: deps
	@tools/mutants

clean:
	rm -rf $(BUILD) build-asan
