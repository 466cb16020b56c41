# What ./run and ./test share; read by them with `.`, in a shell with `set -eu` and $root the source tree.

# setup LIST...: installs what is missing of these package lists. Ends the shell where that fails.
setup() {
    setup_status=0
    "$root/packaging/install-packages" "$@" || setup_status=$?
    case $setup_status in
    0) ;;
    3) rm -f "$root"/build/*/build.ninja ;; # configure again: what was missing may now be found
    *) exit 1 ;;
    esac
}

# build PRESET [TARGET...]: configures where that was not done, and builds. Prints to standard error.
build() {
    preset=$1
    shift
    (
        cd "$root"
        [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"
        if [ $# -gt 0 ]; then cmake --build "build/$preset" --target "$@"; else cmake --build "build/$preset"; fi
    ) >&2 </dev/null
}
