# "make demo" and "make check" are for everyone; the other targets are for developers of the project.
.PHONY: help demo check check-parser-library asan fuzz shapes windows-check lint valgrind coverage deb deb-check bench clean

help:
	@echo "make demo           build the tool and show a few queries"
	@echo "make check          build everything and run all tests"
	@echo "make check-parser-library"
	@echo "                    the same with every document read by the parser library"
	@echo "make asan           same, under address, undefined-behaviour and leak sanitizers"
	@echo "make fuzz           run each fuzz target for FUZZ_SECONDS (default 120)"
	@echo "make shapes         measure how time and memory grow with extreme documents and expressions"
	@echo "make windows-check  build for Windows and run the tests under Wine"
	@echo "make lint           run clang-tidy and cppcheck over the sources, shellcheck over the scripts"
	@echo "make valgrind       run a part of the tests under valgrind's memcheck"
	@echo "make coverage       measure which lines and branches the tests reach"
	@echo "make deb            build a Debian package of the tool, the plug-in and what a host needs"
	@echo "make deb-check      same, then install, use and remove it in a separate folder"
	@echo "make bench          measure, compare with other libraries and write docs/performance.md"
	@echo "make clean          remove the build folders"

demo:
	@scripts/install-deps.sh build
	@cmake --preset release --log-level=WARNING
	@cmake --build --preset release
	@scripts/demo.sh build/release/bin

check:
	@scripts/install-deps.sh build test
	@cmake --preset dev --log-level=WARNING
	@cmake --build --preset dev
	@ctest --preset dev

# Reconfigured, one file is compiled anew. Random expressions on trees without documents are left out.
check-parser-library:
	@scripts/install-deps.sh build test
	@cmake --preset dev --log-level=WARNING -DXMLPLUGIN_PLAIN_READER=OFF
	@cmake --build --preset dev
	@ctest --preset dev -E 'Shares/PropertyTest'
	@cmake --preset dev --log-level=WARNING -DXMLPLUGIN_PLAIN_READER=ON

asan:
	@scripts/install-deps.sh build test
	@cmake --preset asan --log-level=WARNING
	@cmake --build --preset asan
	@ctest --preset asan

fuzz:
	@FUZZ_SECONDS=$(FUZZ_SECONDS) scripts/fuzz.sh

shapes:
	@scripts/install-deps.sh build test
	@cmake --preset dev --log-level=WARNING
	@cmake --build --preset dev --target shapes
	@build/dev/bin/shapes

windows-check:
	@scripts/windows-check.sh

lint:
	@scripts/install-deps.sh build test lint
	@scripts/lint.sh

valgrind:
	@scripts/install-deps.sh build test valgrind
	@cmake --preset dev --log-level=WARNING
	@cmake --build --preset dev
	@scripts/valgrind.sh

coverage:
	@scripts/install-deps.sh build test coverage
	@scripts/coverage.sh

deb:
	@scripts/install-deps.sh build deb
	@cmake --preset deb --log-level=WARNING
	@cmake --build --preset deb
	@cpack --preset deb
	@ls build/deb/*.deb

deb-check: deb
	@scripts/deb-check.sh build/deb/*.deb

bench:
	@scripts/install-deps.sh build bench
	@cmake --preset bench --log-level=WARNING
	@cmake --build --preset bench
	@build/bench/bin/stage_bench --benchmark_min_time=0.1 --benchmark_out=build/bench/stages.json --benchmark_out_format=json
	@build/bench/bin/peers_bench --json build/bench/peers.json
	@bench/right/compare.py build/bench/bin --json build/bench/right.json
	@bench/report.py docs build/bench/stages.json build/bench/peers.json build/bench/right.json

clean:
	@rm -rf build
