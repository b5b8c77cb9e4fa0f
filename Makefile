# Set-up, build and test in one step each. `make demo` and `make test`
# install what a fresh Debian machine lacks (as root; otherwise they print the
# apt-get command to run), configure, build, and then run.
BUILD     ?= build
ASAN_BUILD ?= build-asan
JOBS      ?= $(shell nproc 2>/dev/null || echo 2)
PACKAGES  := cmake make g++ pkg-config python3 antlr3 libantlr3c-dev libicu-dev googletest libgtest-dev \
             libbenchmark-dev nlohmann-json3-dev libcli11-dev libgraphviz-dev fonts-dejavu-core \
             python3-jsonschema

.PHONY: all deps configure build demo test test-asan bench install clean

all: build

deps:
	@missing=""; \
	for p in $(PACKAGES); do dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "ok installed" || missing="$$missing $$p"; done; \
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
	cd $(ASAN_BUILD) && ctest --output-on-failure -j$(JOBS)

bench: build
	$(BUILD)/bench/sqlantlr_bench

install: build
	cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD)
