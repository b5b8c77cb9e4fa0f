# Set-up, build and test in one step each. `make demo` and `make test`
# install what a fresh Debian machine lacks (as root; otherwise they print the
# apt-get command to run), configure, build, and then run.
BUILD     ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
# `make fuzz`: seconds per fuzz target.
FUZZ_SECONDS ?= 600
JOBS      ?= $(shell nproc 2>/dev/null || echo 2)
PACKAGES  := cmake make g++ pkg-config python3 antlr3 libantlr3c-dev libicu-dev googletest libgtest-dev \
             libbenchmark-dev nlohmann-json3-dev libcli11-dev libgraphviz-dev fonts-dejavu-core \
             python3-jsonschema

.PHONY: all deps fuzz-deps configure build demo test test-asan fuzz bench bench-hostile install clean

all: build

deps:
	@missing=""; \
	for p in $(PACKAGES) $(EXTRA_PACKAGES); do dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "ok installed" || missing="$$missing $$p"; done; \
	if [ -n "$$missing" ]; then \
	  if [ "$$(id -u)" = "0" ]; then \
	    echo "Installing:$$missing"; \
	    apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq$$missing; \
	  else \
	    echo "These Debian packages are missing:$$missing"; \
	    echo "Install them with:  sudo apt-get install -y$$missing"; \
	    exit 1; \
	  fi; \
	fi

configure: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo

build: configure
	cmake --build $(BUILD) -j$(JOBS)

# Prints the demo's model and writes its diagram to examples/demo.svg.
demo: build
	$(BUILD)/sqlantlr model --pretty examples/demo.sql
	$(BUILD)/sqlantlr diagram -o examples/demo.svg examples/demo.sql
	@echo "Wrote examples/demo.svg"


# Every test; under CI=true a second run with AddressSanitizer and
# UndefinedBehaviorSanitizer follows.
test: build
	cd $(BUILD) && ctest --output-on-failure -j$(JOBS)
	@if [ "$$CI" = "true" ]; then $(MAKE) --no-print-directory test-asan; fi

test-asan: deps
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DSQLANTLR_SANITIZE=ON -DSQLANTLR_BUILD_BENCH=OFF
	cmake --build $(ASAN_BUILD) -j$(JOBS)
	cd $(ASAN_BUILD) && LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp:print_suppressions=0 ctest --output-on-failure -j$(JOBS)

# libFuzzer ships with clang's runtime libraries.
fuzz-deps:
	@$(MAKE) --no-print-directory deps EXTRA_PACKAGES="clang libclang-rt-14-dev"

# Fuzzes the library (fuzz_parse) and the lexer (fuzz_lex) for FUZZ_SECONDS
# each under AddressSanitizer and UndefinedBehaviorSanitizer. New inputs go to
# $(FUZZ_BUILD)/corpus-*, crashes to $(FUZZ_BUILD)/findings-*; minimize a crash
# with `-minimize_crash=1` and add it to fuzz/corpus.
fuzz: fuzz-deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSQLANTLR_FUZZ=ON \
	  -DSQLANTLR_BUILD_TESTS=OFF -DSQLANTLR_BUILD_BENCH=OFF
	cmake --build $(FUZZ_BUILD) -j$(JOBS) --target fuzz_parse fuzz_lex
	@for t in parse lex; do \
	  mkdir -p $(FUZZ_BUILD)/corpus-$$t $(FUZZ_BUILD)/findings-$$t; \
	  echo "fuzz_$$t: $(FUZZ_SECONDS) s"; \
	  $(FUZZ_BUILD)/fuzz/fuzz_$$t -max_total_time=$(FUZZ_SECONDS) -max_len=4096 -timeout=20 -rss_limit_mb=4096 \
	    -artifact_prefix=$(FUZZ_BUILD)/findings-$$t/ -print_final_stats=1 \
	    $(FUZZ_BUILD)/corpus-$$t fuzz/corpus tests/golden/cases || exit 1; \
	done

# MB/s and peak RSS of DDL import, `sqlantlr model` and dump import at 1, 10
# and 100 MB (BENCH_SIZES=1,10 to choose; SQLANTLR_BENCH_1GB=1 adds 1 GB),
# then the library's micro-benchmarks.
BENCH_SIZES ?=
bench: build
	$(BUILD)/bench/sqlantlr_workload_bench $(if $(BENCH_SIZES),--sizes $(BENCH_SIZES))
	$(BUILD)/bench/sqlantlr_bench

# Deep nesting, duplicate names and huge tokens: time and peak memory per case.
# The build type matters: configure with -DCMAKE_BUILD_TYPE=Release for figures.
bench-hostile: build
	$(BUILD)/bench/sqlantlr_hostile_bench

install: build
	cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD)
