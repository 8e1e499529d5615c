# Everyday commands. `make test` and `make demo` install what is missing first.
SHELL := /bin/bash
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
BUILD ?= build
BUILD_ASAN ?= build-asan
BUILD_RELEASE ?= build-release
BUILD_BENCH ?= build-bench
BUILD_FUZZ ?= build-fuzz
BUILD_ARMHF ?= build-armhf
DEMO_PORT ?= 8080
# The demo rack: qam, cofdm, isdbt or cofdmqamb (the pages show the master's family).
DEMO_RACK ?= qam
# make install: where the program, the browser front and the server configurations go.
PREFIX ?= /opt/cambioIP
DESTDIR ?=
# The installed program has libxml2, ICU and the C++ runtime linked in (see README.md: a fast
# start, 34 MB); STATIC=OFF links Debian's shared libraries instead.
STATIC ?= ON

# Debian packages the demo needs: compiler and build tools, libxml2 and the demo's web server.
DEMO_PACKAGES := g++ make cmake pkg-config libxml2-dev lighttpd
# And the tests: GoogleTest, xmllint for checking saved documents, BusyBox (its httpd serves
# the installed configuration in a test, its mkpasswd hashes logins), and the browser and node
# for the browser tests. A package counts as present also when an installed package provides
# it (NodeSource's nodejs provides npm and conflicts with it).
PACKAGES := $(DEMO_PACKAGES) libxml2-utils libgtest-dev busybox chromium nodejs npm
# The browser tests' node modules (playwright-core), installed from their lock file.
BROWSER_TESTS := tests/browser

.PHONY: all deps deps-demo install-packages build build-asan test test-plain test-asan golden \
        test-ratio demo install bench stress fuzz cross-armhf test-armhf clean

all: build

deps: install-packages
	@if [ ! -d $(BROWSER_TESTS)/node_modules ] || \
	    [ $(BROWSER_TESTS)/package-lock.json -nt $(BROWSER_TESTS)/node_modules/.package-lock.json ]; then \
	  echo "Installing the browser tests' node modules (npm ci in $(BROWSER_TESTS))"; \
	  cd $(BROWSER_TESTS) && npm ci --no-audit --no-fund --loglevel=error; \
	fi

deps-demo:
	@$(MAKE) --no-print-directory install-packages PACKAGES="$(DEMO_PACKAGES)"

install-packages:
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

$(BUILD)/Makefile:
	cmake -S . -B $(BUILD)

build: $(BUILD)/Makefile
	cmake --build $(BUILD) -j$(JOBS)

build-asan:
	cmake -S . -B $(BUILD_ASAN) -DCAMBIOIP_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug
	cmake --build $(BUILD_ASAN) -j$(JOBS)

test-plain:
	cmake -S . -B $(BUILD) -DBUILD_TESTING=ON
	cmake --build $(BUILD) -j$(JOBS)
	cd $(BUILD) && ctest --output-on-failure -j$(JOBS) $(or $(CTEST_ARGS),-LE stress)

test-asan: build-asan
	cd $(BUILD_ASAN) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 ctest --output-on-failure -j$(JOBS) -LE stress

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

# The demo builds the program and the browser's tables only, not the tests.
demo: deps-demo
	@[ -f $(BUILD)/Makefile ] || cmake -S . -B $(BUILD) -DBUILD_TESTING=OFF
	cmake --build $(BUILD) -j$(JOBS) --target cambioIP.cgi tablas_js
	demo/run.sh $(BUILD)/cambioIP.cgi $(DEMO_PORT) $(BUILD) $(DEMO_RACK)

# A stripped Release build of the program alone, installed under $(DESTDIR)$(PREFIX).
install:
	cmake -S . -B $(BUILD_RELEASE) -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DCAMBIOIP_STATIC=$(STATIC)
	cmake --build $(BUILD_RELEASE) -j$(JOBS) --target cambioIP.cgi tablas_js
	DESTDIR="$(DESTDIR)" cmake --install $(BUILD_RELEASE) --prefix "$(PREFIX)" --strip

# The bench (not part of make test): a Release build measured against the parse of the
# documents each request reads, on racks of 1 to 128 units; the table is printed and written
# to $(BUILD_BENCH)/bench.json. BENCH_RUNS sets the runs per wall-time median, BENCH_UNITS
# the rack sizes.
BENCH_RUNS ?= 21
BENCH_UNITS ?= 1,8,32,128
bench:
	@$(MAKE) --no-print-directory install-packages PACKAGES="$(DEMO_PACKAGES) valgrind"
	cmake -S . -B $(BUILD_BENCH) -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DCAMBIOIP_BENCH=ON
	cmake --build $(BUILD_BENCH) -j$(JOBS) --target cambioIP.cgi suelo banco traza
	cmake -S . -B $(BUILD_BENCH)/installed -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DCAMBIOIP_STATIC=ON
	cmake --build $(BUILD_BENCH)/installed -j$(JOBS) --target cambioIP.cgi
	BANCO_INSTALADO=$(BUILD_BENCH)/installed/cambioIP.cgi $(BUILD_BENCH)/bench/banco $(BUILD_BENCH)/cambioIP.cgi $(BUILD_BENCH)/bench/suelo \
	  $(BUILD_BENCH)/bench/libtraza.so tests/fixtures/racks $(BUILD_BENCH)/racks $(BENCH_RUNS) $(BENCH_UNITS)
	@cp $(BUILD_BENCH)/racks/bench.json $(BUILD_BENCH)/bench.json

# The fuzz targets (fuzz/: the form decoder, the XML layer, the whole request), built with
# clang's libFuzzer under ASan and UBSan, each run FUZZ_SECONDS from seeds made of the golden
# cases; the corpus grows in $(BUILD_FUZZ)/fuzz/corpus, what crashes lands in
# $(BUILD_FUZZ)/fuzz/crashes and the run fails.
FUZZ_SECONDS ?= 60
fuzz:
	@$(MAKE) --no-print-directory install-packages PACKAGES="$(DEMO_PACKAGES) clang libclang-rt-14-dev"
	cmake -S . -B $(BUILD_FUZZ) -DCMAKE_CXX_COMPILER=clang++ -DCAMBIOIP_FUZZ=ON -DBUILD_TESTING=OFF
	cmake --build $(BUILD_FUZZ) -j$(JOBS) --target fuzz
	fuzz/run.sh $(BUILD_FUZZ) $(FUZZ_SECONDS)

# The program for the rack's master, a 32-bit ARM (armhf) Linux machine: Debian's cross
# compiler, and Debian's armhf libxml2, ICU, zlib and xz unpacked into $(BUILD_ARMHF)/sysroot
# (cmake/sysroot-armhf.sh; nothing armhf is installed on this machine). Linked as make install
# links it (STATIC=ON: only the C library shared); STATIC=OFF needs the shared libraries on the
# master. Leaves $(BUILD_ARMHF)/cambioIP.cgi; make install BUILD_RELEASE=$(BUILD_ARMHF) lays out
# the master's files from it.
ARMHF_PACKAGES := libxml2-dev libicu-dev zlib1g-dev liblzma-dev libxml2 libicu72 zlib1g liblzma5
cross-armhf:
	@$(MAKE) --no-print-directory install-packages PACKAGES="make cmake pkg-config file g++-arm-linux-gnueabihf qemu-user"
	cmake/sysroot-armhf.sh $(CURDIR)/$(BUILD_ARMHF)/sysroot $(ARMHF_PACKAGES)
	cmake -S . -B $(BUILD_ARMHF) -DCMAKE_TOOLCHAIN_FILE=$(CURDIR)/cmake/armhf.cmake \
	  -DCAMBIOIP_ARMHF_SYSROOT=$(CURDIR)/$(BUILD_ARMHF)/sysroot -DCMAKE_BUILD_TYPE=Release \
	  -DBUILD_TESTING=OFF -DCAMBIOIP_STATIC=$(STATIC)
	cmake --build $(BUILD_ARMHF) -j$(JOBS) --target cambioIP.cgi
	file $(BUILD_ARMHF)/cambioIP.cgi

# The golden cases with the armhf program under qemu-arm, run by the golden runner of the
# plain build: every answer and file must be the same bytes as on this machine. The guest's
# C library is the cross compiler's; with STATIC=OFF its loader also needs the sysroot's
# libxml2, ICU, zlib and xz, passed to the guest alone (-E), not through the runner.
ARMHF_LIBS := $(CURDIR)/$(BUILD_ARMHF)/sysroot/usr/lib/arm-linux-gnueabihf:$(CURDIR)/$(BUILD_ARMHF)/sysroot/lib/arm-linux-gnueabihf
ARMHF_LAUNCHER ?= qemu-arm -L /usr/arm-linux-gnueabihf$(if $(filter OFF,$(STATIC)), -E LD_LIBRARY_PATH=$(ARMHF_LIBS))
test-armhf: cross-armhf
	@$(MAKE) --no-print-directory install-packages PACKAGES="$(DEMO_PACKAGES) libgtest-dev"
	cmake -S . -B $(BUILD) -DBUILD_TESTING=ON
	cmake --build $(BUILD) -j$(JOBS) --target golden_test
	CAMBIOIP_TEST_PROGRAM=$(CURDIR)/$(BUILD_ARMHF)/cambioIP.cgi CAMBIOIP_TEST_LAUNCHER="$(ARMHF_LAUNCHER)" \
	  CAMBIOIP_LOAD_PAUSE_MS=0 $(BUILD)/tests/golden/golden_test --gtest_brief=1

# The long reliability runs (not part of make test, which runs the same fault tests at a small
# scale): killed saves, failed writes, concurrent saves and hostile documents at full count, in
# the plain and the sanitized build, then the load run through the demo's server. Each prints
# its figures; LOAD_CLIENTS and LOAD_SECONDS set the load.
stress: deps
	CAMBIOIP_STRESS=1 $(MAKE) --no-print-directory test-plain CTEST_ARGS="-L fault"
	@grep -h '\[fault figures\]' $(BUILD)/Testing/Temporary/LastTest.log
	$(MAKE) --no-print-directory build-asan
	cd $(BUILD_ASAN) && CAMBIOIP_STRESS=1 ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 \
	  ctest --output-on-failure -j$(JOBS) -L fault
	@grep -h '\[fault figures\]' $(BUILD_ASAN)/Testing/Temporary/LastTest.log
	cd $(BUILD) && ctest --output-on-failure -L stress
	@sed -n '/^load run:/,/^server diagnostics/p' $(BUILD)/Testing/Temporary/LastTest.log

clean:
	rm -rf $(BUILD) $(BUILD_ASAN) $(BUILD_RELEASE) $(BUILD_BENCH) $(BUILD_FUZZ) $(BUILD_ARMHF)
