# Set-up, build and run. Each target installs what is missing (Debian, as root) first.
#   make demo            build and run the demo host (writes screenshots headless)
#   make test            build and run every test (SANITIZE=1: under ASan and UBSan)
#   make bench           build and run the benchmarks
#   make install PREFIX=/some/where
#   make fuzz            run the archive fuzzers for a bounded time each (FUZZ_SECONDS)

PREFIX       ?= /usr/local
BUILD_TYPE   ?= RelWithDebInfo
FUZZ_SECONDS ?= 120
JOBS         ?= $(shell nproc)

ifeq ($(SANITIZE),1)
BUILD := build-asan
CMAKE_FLAGS := -DORLEXUI_SANITIZE=ON -DORLEXUI_BENCH=OFF -DCMAKE_BUILD_TYPE=Debug
else
BUILD := build
CMAKE_FLAGS := -DCMAKE_BUILD_TYPE=$(BUILD_TYPE)
endif

PACKAGES := cmake make g++ pkg-config libgtest-dev libgmock-dev libbenchmark-dev \
            qt6-base-dev libgl-dev fontconfig fonts-liberation2 fonts-dejavu-core \
            xvfb xauth
FUZZ_PACKAGES := clang libclang-rt-dev

.PHONY: all deps build test demo bench install fuzz clean

all: build

deps:
	@tools/ensure-packages $(PACKAGES)

$(BUILD)/CMakeCache.txt: | deps
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS) -DCMAKE_INSTALL_PREFIX=$(PREFIX)

build: deps $(BUILD)/CMakeCache.txt
	cmake --build $(BUILD) -j $(JOBS)

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen \
	  ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
	  LSAN_OPTIONS=suppressions=$(CURDIR)/tools/lsan.supp:print_suppressions=0 \
	  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	  ctest --output-on-failure -j $(JOBS) --timeout 300

demo: build
	@if [ -z "$$DISPLAY" ] && [ -z "$$WAYLAND_DISPLAY" ]; then export QT_QPA_PLATFORM=offscreen; fi; \
	  $(BUILD)/demo/orlexui_demo $(DEMO_ARGS)

bench: build
	@for b in $(BUILD)/bench/bench_*; do echo "== $$b"; QT_QPA_PLATFORM=offscreen $$b $(BENCH_ARGS) || exit 1; done

install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

fuzz:
	@tools/ensure-packages $(PACKAGES) $(FUZZ_PACKAGES)
	CC=clang CXX=clang++ cmake -S . -B build-fuzz -DORLEXUI_FUZZ=ON -DORLEXUI_TESTS=OFF \
	  -DORLEXUI_BENCH=OFF -DORLEXUI_DEMO=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build build-fuzz -j $(JOBS) --target fuzz_archive fuzz_view
	mkdir -p build-fuzz/corpus build-fuzz/corpus-view
	build-fuzz/fuzz/fuzz_archive -max_total_time=$(FUZZ_SECONDS) -rss_limit_mb=2048 \
	  build-fuzz/corpus fuzz/seeds
	build-fuzz/fuzz/fuzz_view -max_total_time=$(FUZZ_SECONDS) -rss_limit_mb=2048 \
	  build-fuzz/corpus-view fuzz/seeds-view

clean:
	rm -rf build build-asan build-fuzz
