# Sourced by .ci/run: steps in two lanes, and a table of them at the end.
#
# In front, steps run one after the other with their output as it comes. Behind them, at the lowest priority, a second lane
# gets what they leave of the processors; what a step there says is printed as a whole, when the step in front of it is
# over. The first step that fails, in either lane, ends all.

steps=$(mktemp -d) # for each step NAME.done or NAME.failed, with its seconds, and NAME.log for those behind
lane_behind=       # its process group

# run_step NAME COMMAND...
run_step() {
    local name=$1 started=$SECONDS status=0 took
    shift
    echo "== $name"
    "$@" || status=$?
    took=$((SECONDS - started))
    if [ $status -eq 0 ]; then
        echo "== done in $took s: $name"
        echo $took >"$steps/$name.seconds"
        mv "$steps/$name.seconds" "$steps/$name.done"
    else
        echo "== failed with status $status after $took s: $name"
        echo $took >"$steps/$name.failed"
    fi
    return $status
}

has_failed() { compgen -G "$steps/*.failed" >/dev/null; }

say_what_ended_behind() {
    local log
    while read -r log; do
        if [ -e "${log%.log}.done" ] || [ -e "${log%.log}.failed" ]; then
            cat "$log"
            rm "$log"
        fi
    done < <(compgen -G "$steps/*.log" | tr '\n' '\0' | xargs -0r ls -tr)
}

# step NAME COMMAND...: in front.
step() {
    run_step "$@" || exit 1
    say_what_ended_behind
    ! has_failed || exit 1
}

# behind FUNCTION: starts the other lane, which calls step_behind and await.
behind() {
    set -m # a process group of its own
    (
        trap - EXIT
        renice -n 19 -p $BASHPID >/dev/null
        "$1"
    ) </dev/null &
    lane_behind=$!
    set +m
    disown
}
step_behind() {
    run_step "$@" >"$steps/$1.log" 2>&1 || exit 1
}

# await NAME: until that step of the other lane has ended; false where one has failed.
await() {
    until [ -e "$steps/$1.done" ] || has_failed; do
        sleep 0.2
    done
    ! has_failed
}

# wait_for NAME: await in front, as a row of the table.
wait_for() {
    local started=$SECONDS
    echo "== waiting for: $1"
    await "$1" || exit 1
    echo $((SECONDS - started)) >"$steps/(waiting for: $1).done"
    say_what_ended_behind
}

# Longest first. The shares are those of the whole time, so they are more than 100 together.
print_table() {
    local total=$((SECONDS > 0 ? SECONDS : 1)) file
    printf '\n%-32s %8s %6s\n' step seconds share
    for file in "$steps"/*.done "$steps"/*.failed; do
        [ ! -e "$file" ] || printf '%s\t%s\n' "$(cat "$file")" "$(basename "${file%.*}")"
    done | sort -nr | while IFS=$'\t' read -r seconds name; do
        printf '%-32s %8d %5d%%\n' "$name" "$seconds" $((100 * seconds / total))
    done
    printf '%-32s %8d %5d%%\n' total "$total" 100
}

end_steps() {
    local status=$? failed
    [ -z "$lane_behind" ] || kill -- "-$lane_behind" 2>/dev/null || true
    say_what_ended_behind
    print_table
    for failed in "$steps"/*.failed; do
        [ ! -e "$failed" ] || echo "Failed: $(basename "$failed" .failed)"
    done
    rm -rf "$steps"
    exit $status
}
trap end_steps EXIT
