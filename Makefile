# Everyday commands. `make test` and `make demo` install what is missing first.
SHELL := /bin/bash
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
BUILD ?= build
BUILD_ASAN ?= build-asan
DEMO_PORT ?= 8080

# Debian packages the project needs: compiler and build tools, libxml2, GoogleTest,
# xmllint for checking saved documents, the web server of the demo and the browser tests,
# and the browser and node for those tests. A package counts as present also when an
# installed package provides it (NodeSource's nodejs provides npm and conflicts with it).
PACKAGES := g++ make cmake pkg-config libxml2-dev libxml2-utils libgtest-dev lighttpd \
            chromium nodejs npm
# The browser tests' node modules (playwright-core), installed from their lock file.
BROWSER_TESTS := tests/browser

.PHONY: all deps build build-asan test test-plain test-asan golden test-ratio demo clean

all: build

deps:
	@present=$$(dpkg-query -W -f='$${Status}\t$${Package},$${Provides}\n' 2>/dev/null | \
	  awk -F'\t' '$$1 == "install ok installed" { print $$2 }' | tr ',' '\n' | sed 's/(.*//; s/ //g'); \
	missing=""; \
	for p in $(PACKAGES); do \
	  grep -qxF "$$p" <<<"$$present" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing:$$missing"; \
	  sudo=""; [ "$$(id -u)" = 0 ] || sudo=sudo; \
	  $$sudo apt-get update -q && \
	  DEBIAN_FRONTEND=noninteractive $$sudo apt-get install -y -q --no-install-recommends $$missing; \
	fi
	@if [ ! -d $(BROWSER_TESTS)/node_modules ] || \
	    [ $(BROWSER_TESTS)/package-lock.json -nt $(BROWSER_TESTS)/node_modules/.package-lock.json ]; then \
	  echo "Installing the browser tests' node modules (npm ci in $(BROWSER_TESTS))"; \
	  cd $(BROWSER_TESTS) && npm ci --no-audit --no-fund --loglevel=error; \
	fi

$(BUILD)/Makefile:
	cmake -S . -B $(BUILD)

build: $(BUILD)/Makefile
	cmake --build $(BUILD) -j$(JOBS)

build-asan:
	cmake -S . -B $(BUILD_ASAN) -DCAMBIOIP_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug
	cmake --build $(BUILD_ASAN) -j$(JOBS)

test-plain: build
	cd $(BUILD) && ctest --output-on-failure -j$(JOBS)

test-asan: build-asan
	cd $(BUILD_ASAN) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 ctest --output-on-failure -j$(JOBS)

test: deps
	$(MAKE) test-plain
	$(MAKE) test-asan
	@$(MAKE) --no-print-directory test-ratio

# Rewrites the expected answers of the golden cases from what the program does now, after a
# deliberate change; review the result with git diff before committing it.
golden: build
	GOLDEN_UPDATE=1 $(BUILD)/tests/golden/golden_test

# Lines of test sources against lines of code: src/, tools/ and www/ (golden answers,
# fixtures and images are data).
test-ratio:
	@t=$$(find tests -type f \( -name '*.cpp' -o -name '*.h' -o -name '*.py' -o -name '*.sh' -o -name '*.js' \) \
	      -not -path 'tests/fixtures/*' -not -path 'tests/golden/cases/*' -not -path '*/node_modules/*' -print0 | xargs -0 cat | wc -l); \
	c=$$(find src tools www -type f -not -name '*.png' -not -name '*.gif' -print0 2>/dev/null | xargs -0 cat | wc -l); \
	echo "Test lines: $$t for $$c lines of code ($$((100 * t / c)) %)"

demo: deps
	$(MAKE) build
	demo/run.sh $(BUILD)/cambioIP.cgi $(DEMO_PORT) $(BUILD)

clean:
	rm -rf $(BUILD) $(BUILD_ASAN)
