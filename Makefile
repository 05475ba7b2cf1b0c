# One command for each habit, the same on a desk and in CI. `make demo` and `make test` also install what is missing.
SHELL := /bin/bash
PREFIX ?= /usr/local
JOBS ?= $(shell nproc)

.PHONY: demo test check sanitize bench fuzz install packages build clean

packages:
	@tools/install-packages build

build: packages
	@cmake --preset test >/dev/null
	@cmake --build --preset test -- -j$(JOBS)

demo: build
	@build/test/bin/qal-workbench --project examples/demo --state build/demo-state --script examples/demo.script

test: build
	@ctest --preset test -j$(JOBS)

check: packages
	@tools/install-packages check
	@cmake --preset test >/dev/null
	@tools/check build/test

sanitize: packages
	@cmake --preset sanitize >/dev/null && cmake --build --preset sanitize -- -j$(JOBS)
	@ctest --preset sanitize -j$(JOBS)
	@cmake --preset thread >/dev/null && cmake --build --preset thread --target thread_tests -- -j$(JOBS)
	@ctest --preset thread -j$(JOBS) -L thread

bench: packages
	@cmake --preset bench >/dev/null && cmake --build --preset bench -- -j$(JOBS)
	@tools/run-benches build/bench

fuzz: packages
	@tools/install-packages fuzz
	@cmake --preset fuzz >/dev/null && cmake --build --preset fuzz -- -j$(JOBS)
	@tools/run-fuzzers build/fuzz $(or $(SECONDS_EACH),60)

install: build
	@cmake --install build/test --prefix $(PREFIX)

clean:
	@rm -rf build
