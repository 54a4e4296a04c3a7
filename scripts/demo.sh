# Sourced by run.sh and screenshots.sh: a demo data folder and an emulated box, so that the
# program can be tried without hardware and without touching an operator's records.
# Runs from the repository root; the programs are taken from TARVELO_BUILD (default ./build).

# demo_documents FOLDER: makes FOLDER the documents folder of the programs started from here
# on (through the XDG user directories, which Qt reads), and on first use puts the sample
# script into its Scripts folder.
demo_documents() {
    local documents
    documents=$(realpath -m "$1")
    mkdir -p "$documents/.config"
    printf 'XDG_DOCUMENTS_DIR="%s"\n' "$documents" >"$documents/.config/user-dirs.dirs"
    export XDG_CONFIG_HOME="$documents/.config"
    local scripts="$documents/Mirenthalic/Tarvelo/Scripts"
    if [ ! -d "$scripts" ]; then
        mkdir -p "$scripts"
        cp tools/demo/*.script "$scripts/"
    fi
}

# start_demo_box LINK SPEED: starts the box emulator with a fixed symlink LINK to its terminal
# and points the program's port search at it. stop_demo_box ends it.
demo_box_pid=""
start_demo_box() {
    local link
    link=$(realpath -m "$1")
    mkdir -p "$(dirname "$link")"
    "${TARVELO_BUILD:-build}/tools/devsim/tarvelo-devsim" --link "$link" --speed "$2" >/dev/null &
    demo_box_pid=$!
    local tries=0
    until [ -e "$link" ]; do
        if ! kill -0 "$demo_box_pid" 2>/dev/null || ((++tries > 50)); then
            echo "The box emulator didn't start." >&2
            return 1
        fi
        sleep 0.1
    done
    export TARVELO_EXTRA_PORTS="$link"
}

stop_demo_box() {
    if [ -n "$demo_box_pid" ]; then
        kill "$demo_box_pid" 2>/dev/null || true
        wait "$demo_box_pid" 2>/dev/null || true
        demo_box_pid=""
    fi
}
