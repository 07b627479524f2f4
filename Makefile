# Wraps CMake for the two everyday commands: `make demo` and `make test`.
BUILD ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build demo test bench sanitize clean mutants

all: build

deps:
	@tools/install-deps

configure: deps
	@test -f $(BUILD)/build.ninja || cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE)

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

demo: build
	@tools/demo $(BUILD)

test: build
	@ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS) --timeout 300

bench: build
	@$(BUILD)/ormida_bench

sanitize: deps
	@test -f build-asan/build.ninja || cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DORMIDA_SANITIZE=ON
	@cmake --build build-asan -j $(JOBS)
	@ctest --test-dir build-asan --output-on-failure -j $(JOBS) --timeout 900

# Plants the faults of tools/mutants.txt one by one and checks that the tests catch each.
# Slow (one rebuild and suite run per fault), so not part of CI.
mutants: deps
	@tools/mutants

clean:
	rm -rf $(BUILD) build-asan
