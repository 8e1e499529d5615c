# Everyday commands. `make test` and `make demo` install what is missing first.
SHELL := /bin/bash
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
BUILD ?= build
BUILD_ASAN ?= build-asan
DEMO_PORT ?= 8080

# Debian packages the project needs: compiler and build tools, libxml2, GoogleTest,
# xmllint for checking saved documents, and the web server of the demo.
PACKAGES := g++ make cmake pkg-config libxml2-dev libxml2-utils libgtest-dev lighttpd

.PHONY: all deps build build-asan test test-plain test-asan demo clean

all: build

deps:
	@missing=""; \
	for p in $(PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q 'install ok installed' || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing:$$missing"; \
	  sudo=""; [ "$$(id -u)" = 0 ] || sudo=sudo; \
	  $$sudo apt-get update -q && \
	  DEBIAN_FRONTEND=noninteractive $$sudo apt-get install -y -q --no-install-recommends $$missing; \
	fi

$(BUILD)/Makefile:
	cmake -S . -B $(BUILD)

build: $(BUILD)/Makefile
	cmake --build $(BUILD) -j$(JOBS)

build-asan:
	cmake -S . -B $(BUILD_ASAN) -DCAMBIOIP_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug \
	  -DCAMBIOIP_REFERENCE_CGI=$(CURDIR)/$(BUILD)/cambioIP.cgi
	cmake --build $(BUILD_ASAN) -j$(JOBS)

test-plain: build
	cd $(BUILD) && ctest --output-on-failure -j$(JOBS)

test-asan: build-asan
	cd $(BUILD_ASAN) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 ctest --output-on-failure -j$(JOBS)

test: deps
	$(MAKE) test-plain
	$(MAKE) test-asan

demo: deps
	$(MAKE) build
	demo/run.sh $(BUILD)/cambioIP.cgi $(DEMO_PORT) $(BUILD)

clean:
	rm -rf $(BUILD) $(BUILD_ASAN)
