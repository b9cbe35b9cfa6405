# make run    install what is missing, build, start the designer window
# make test   install what is missing, build, run every test
# make bench  build and run the benchmarks

BUILD      ?= build
# One clang tree holds the sanitized unit tests and the fuzzers: both need
# the engine built with address and undefined-behaviour checks, and a second
# compile of the same sources would find nothing new.
CHECK_BUILD ?= build-check
FUZZ_SECONDS ?= 20
JOBS       ?= $(shell nproc)
CMAKE_GEN  := -G Ninja
SHELL      := /bin/bash

.PHONY: all deps build run test unit check-build asan fuzz bench format format-check clean

all: build

deps:
	@bash scripts/install-deps.sh

build: deps
	cmake -S . -B $(BUILD) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD) -j $(JOBS)

run: build
	@if [ -x $(BUILD)/app/DrenikFilterDesign ]; then \
	  $(BUILD)/app/DrenikFilterDesign; \
	else \
	  $(BUILD)/app/drenik design; \
	fi

# Unit and end-to-end tests, then the same unit tests under the address and
# undefined-behaviour sanitizers, then each fuzzer for FUZZ_SECONDS.
test: format-check unit asan fuzz

unit: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

# The sanitized tree: clang, every library instrumented for the fuzzers as
# well (coverage counters cost the tests little), warnings left to the main
# build, which treats them as errors.
check-build: deps
	CXX=clang++ cmake -S . -B $(CHECK_BUILD) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Debug \
	  -DDRENIK_FUZZ=ON -DDRENIK_WITH_QT=OFF -DDRENIK_BENCH=OFF -DDRENIK_WERROR=OFF
	cmake --build $(CHECK_BUILD) -j $(JOBS)

asan: check-build
	cd $(CHECK_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest --output-on-failure -j $(JOBS)

# Undefined behaviour halts a fuzzer as a crash does (compiled in, and again
# in UBSAN_OPTIONS); a run that fails keeps its log and its crashing input
# under $(CHECK_BUILD)/findings and prints the end of the log. A longer hunt:
# make fuzz FUZZ_SECONDS=600.
FUZZ_ENV := UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ASAN_OPTIONS=detect_leaks=1

fuzz: check-build
	@set -e; findings=$(CHECK_BUILD)/findings; rm -rf $$findings; mkdir -p $$findings; \
	for f in $(CHECK_BUILD)/fuzz/fuzz_*; do \
	  [ -x "$$f" ] || continue; \
	  name=$$(basename $$f); corpus=$$(mktemp -d); log=$$findings/$$name.log; \
	  if [ -d fuzz/corpus/$$name ]; then cp fuzz/corpus/$$name/* $$corpus/; fi; \
	  echo "== $$name for $(FUZZ_SECONDS) s"; \
	  if ! $(FUZZ_ENV) $$f -max_total_time=$(FUZZ_SECONDS) -timeout=10 \
	       -artifact_prefix=$$findings/$$name- $$corpus > $$log 2>&1 \
	     || grep -q -E 'runtime error|ERROR: [A-Za-z]+Sanitizer' $$log; then \
	    tail -n 60 $$log; rm -rf $$corpus; \
	    echo "FAILED: $$name (log kept in $$log)"; exit 1; fi; \
	  tail -n 2 $$log; rm -rf $$corpus $$log; \
	done

bench: build
	@if [ -x $(BUILD)/bench/drenik_bench ]; then \
	  QT_QPA_PLATFORM=offscreen $(BUILD)/bench/drenik_bench; \
	else echo "no benchmarks built"; fi

format:
	clang-format -i $$(git ls-files '*.cpp' '*.h')

format-check: deps
	@clang-format --dry-run --Werror $$(git ls-files '*.cpp' '*.h') && echo "clang-format: clean"

clean:
	rm -rf $(BUILD) $(CHECK_BUILD)
