# The commands of daily work. Each does by itself what it needs: it installs or names missing packages,
# configures, builds and runs. `make run` writes nothing of its own to standard output and leaves
# standard input alone, so that it can stand in a pipe.
#
#   make run ARGS='-q file'    the terminal program
#   make test                  everything built, every test passed
#   make sanitize              the same under the address and undefined-behaviour sanitizers
#   make bench                 the benchmark table
#   make fuzz TIME=600         the fuzz targets, each for that many seconds
#   make lint                  order of the tree, layout, clang-tidy
#   make format                the layout of all sources and their includes
#   make torture               archives whose writers are killed, 200 times, and two writers for a minute
#   make install PREFIX=/usr/local DESTDIR=

ARGS ?=
PREFIX ?= /usr/local
DESTDIR ?=
TIME ?= 60

JOBS := $(shell nproc 2>/dev/null || echo 2)
NEEDED := g++ cmake ninja-build
TESTING := libgtest-dev librapidcheck-dev
REFERENCES := libgmp-dev libmpfr-dev
FOREIGN := zlib1g libsqlite3-0 liblapack3 libopenblas0-pthread libgsl27
STYLE := clang-format clang-tidy

.PHONY: run program test sanitize bench fuzz torture lint format install clean

run: program
	@build/release/bin/korelTTY $(ARGS)

# Shows its progress the first time, and only what goes wrong from then on.
program:
	@exec </dev/null >&2; \
	if ! test -e build/release/build.ninja; then \
	  tools/packages.sh $(NEEDED) && tools/packages.sh --optional libedit-dev && \
	  cmake --preset release || exit 1; \
	fi; \
	build="cmake --build --preset release --target korelTTY library"; \
	if ! test -x build/release/bin/korelTTY; then $$build; exit; fi; \
	log=$$($$build 2>&1) || { echo "$$log"; exit 1; }

test:
	@tools/packages.sh $(NEEDED) $(TESTING)
	@tools/packages.sh --optional libedit-dev python3 $(REFERENCES)
	@for package in $(FOREIGN); do tools/packages.sh --optional $$package; done
	@cmake --preset release </dev/null
	@cmake --build --preset release </dev/null
	@ctest --preset release -j $(JOBS) </dev/null

sanitize:
	@tools/packages.sh $(NEEDED) $(TESTING)
	@tools/packages.sh --optional libedit-dev python3 $(REFERENCES)
	@for package in $(FOREIGN); do tools/packages.sh --optional $$package; done
	@cmake --preset debug </dev/null
	@cmake --build --preset debug </dev/null
	@ctest --preset debug -j $(JOBS) </dev/null

bench:
	@tools/packages.sh $(NEEDED)
	@tools/packages.sh --optional libbenchmark-dev $(REFERENCES)
	@cmake --preset release </dev/null >&2
	@cmake --build --preset release --target benchmarks </dev/null >&2
	@bench/run.sh build/release

fuzz:
	@tools/packages.sh $(NEEDED) clang libclang-rt-14-dev
	@cmake --preset fuzz </dev/null
	@cmake --build --preset fuzz </dev/null
	@fuzz/run.sh build/fuzz $(TIME)

torture: program
	@tests/library/torture/torture.sh $(CURDIR)/build/release/bin/korelTTY 200 60

install: program
	@DESTDIR="$(DESTDIR)" cmake --install build/release --prefix "$(PREFIX)"

# The program that checks and lays out the tree, without the rest of it.
build/release/tools/house: $(wildcard tools/house/*) src/store/tags.def src/store/tag_facts.h
	@tools/packages.sh $(NEEDED)
	@cmake --preset release </dev/null >&2
	@cmake --build --preset release --target house </dev/null >&2

lint: build/release/tools/house
	@tools/packages.sh --optional $(STYLE)
	@tools/lint.sh build/release $(JOBS)

format: build/release/tools/house
	@tools/packages.sh $(STYLE)
	@git ls-files -co --exclude-standard '*.cpp' '*.h' | xargs build/release/tools/house format

clean:
	rm -rf build
