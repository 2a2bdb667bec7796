# The two commands a fresh Debian 12 machine needs: `make run` and `make test`.
.PHONY: run test build bench fuzz screenshots format package deps clean

run: deps
	cmake --preset release
	cmake --build --preset release
	./build/release/norvale-setup $(or $(ARGS),$(CURDIR)/examples/demo.nvl)

test: deps
	cmake --preset asan
	cmake --build --preset asan
	ctest --preset asan

build: deps
	cmake --preset release
	cmake --build --preset release

bench:
	tools/install-deps.sh --bench
	cmake --preset bench
	cmake --build --preset bench
	tools/run-bench.sh build/bench

fuzz:
	tools/install-deps.sh --fuzz
	cmake --preset fuzz
	cmake --build --preset fuzz
	tools/run-fuzz.sh build/fuzz $(SECONDS)

screenshots: build
	tools/screenshots.sh build/release docs

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

# The Debian package: build/release/norvale-setup_<version>_amd64.deb
package:
	tools/install-deps.sh --package
	cmake --preset release
	cmake --build --preset release
	cd build/release && cpack -G DEB

deps:
	tools/install-deps.sh

clean:
	rm -rf build
