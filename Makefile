# make run    install what is missing, build, start the designer window
# make test   install what is missing, build, run every test (sanitized)
# make fuzz   the coverage-guided fuzzers, FUZZ_SECONDS each
# make bench  build and run the benchmarks

BUILD      ?= build
# The test tree: every library, test and fuzz target built once, with the
# address and undefined-behaviour sanitizers, at -O1 (at -O0 the tolerance
# and chooser runs take minutes under the checks). The fuzz targets run there
# as tests over their corpus and seeded mutations of it; the coverage-guided
# hunt with libFuzzer has its own clang tree.
TEST_BUILD ?= build-test
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
JOBS       ?= $(shell nproc)
CMAKE_GEN  := -G Ninja
SHELL      := /bin/bash

.PHONY: all deps build run test test-build fuzz-build fuzz bench format format-check clean

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

# Every test, end-to-end and window tests included, under the sanitizers;
# leaks inside the system's own libraries are listed in tests/lsan.supp.
test: format-check test-build
	cd $(TEST_BUILD) && QT_QPA_PLATFORM=offscreen \
	  ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp:print_suppressions=0 \
	  UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j $(JOBS)

test-build: deps
	cmake -S . -B $(TEST_BUILD) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Debug \
	  -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1" -DDRENIK_SANITIZE=ON -DDRENIK_BENCH=OFF
	cmake --build $(TEST_BUILD) -j $(JOBS)

# libFuzzer over each target for FUZZ_SECONDS. Undefined behaviour halts a
# fuzzer as a crash does (compiled in, and again in UBSAN_OPTIONS); a run that
# fails keeps its log and its crashing input under $(FUZZ_BUILD)/findings and
# prints the end of the log.
FUZZ_ENV := UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ASAN_OPTIONS=detect_leaks=1

fuzz-build: deps
	@bash scripts/install-deps.sh --fuzz
	CXX=clang++ cmake -S . -B $(FUZZ_BUILD) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Debug \
	  -DDRENIK_FUZZ=ON -DDRENIK_WITH_QT=OFF -DDRENIK_BENCH=OFF -DDRENIK_TESTS=OFF \
	  -DDRENIK_WERROR=OFF
	cmake --build $(FUZZ_BUILD) -j $(JOBS)

fuzz: fuzz-build
	@set -e; findings=$(FUZZ_BUILD)/findings; rm -rf $$findings; mkdir -p $$findings; \
	for f in $(FUZZ_BUILD)/fuzz/fuzz_*; do \
	  [ -x "$$f" ] || continue; \
	  name=$$(basename $$f); corpus=$$(mktemp -d); log=$$findings/$$name.log; \
	  if [ -d fuzz/corpus/$$name ]; then cp fuzz/corpus/$$name/* $$corpus/; fi; \
	  dict=; if [ -f fuzz/$$name.dict ]; then dict=-dict=fuzz/$$name.dict; fi; \
	  echo "== $$name for $(FUZZ_SECONDS) s"; \
	  if ! $(FUZZ_ENV) $$f -max_total_time=$(FUZZ_SECONDS) -timeout=10 $$dict \
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
	rm -rf $(BUILD) $(TEST_BUILD) $(FUZZ_BUILD)
