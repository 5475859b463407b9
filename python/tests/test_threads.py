# SPDX-License-Identifier: Apache-2.0
"""Threads: the interpreter's lock is free while the libraries work, and contexts are safe."""
import subprocess
import sys
import threading
import time

import pytest

import zrschema
from conftest import EXAMPLES, ROUTER
from zrschema._schema import SharedLock


def run_threads(*functions):
    """Runs functions on threads of their own and raises what one of them raises."""
    failures = []

    def guard(function):
        try:
            function()
        except BaseException as failure:
            failures.append(failure)

    threads = [threading.Thread(target=guard, args=[function]) for function in functions]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if failures:
        raise failures[0]


# Between bytecodes the interpreter does not switch threads here: what runs beside the work of a
# library runs because the library's caller has given the lock away.
COUNT_BESIDE = """
import sys, threading, time
import zrschema
sys.setswitchinterval(1e6)
source = 'module m { namespace "urn:m"; prefix m; list l { key k; leaf k { type uint32; } }'
for i in range(3000):
    source += f" leaf x{i} {{ type string; }}"
workspace = zrschema.Workspace()
workspace.add_text("m", source + "}")
yin = workspace.prepare("m")
context = zrschema.Context()
context.load_text(yin)
validator = zrschema.Validator(context)
data = "<c>" + "".join(f'<l xmlns="urn:m"><k>{i}</k></l>' for i in range(5000)) + "</c>"
rounds, is_over = 0, False

def count():
    global rounds
    while not is_over:
        rounds += 1
        time.sleep(0)

counter = threading.Thread(target=count)
counter.start()
for _ in range(100):
    before = rounds
    WORK
    if rounds > before:
        break
else:
    print("no round beside the work")
is_over = True
counter.join()
"""


def test_no_other_thread_runs_beside_what_the_interpreter_does():
    result = subprocess.run([sys.executable, "-c",
                             COUNT_BESIDE.replace("WORK", "sum(range(1000))")],
                            capture_output=True, text=True, timeout=300)
    assert result.stdout == "no round beside the work\n"


@pytest.mark.parametrize("work", ["validator.check(data)", "context.validate_rpc(data)",
                                  "zrschema.Context().load_text(yin)", 'workspace.prepare("m")'])
def test_another_thread_runs_while_a_library_works(work):
    result = subprocess.run([sys.executable, "-c", COUNT_BESIDE.replace("WORK", work)],
                            capture_output=True, text=True, timeout=300)
    assert (result.stdout, result.stderr, result.returncode) == ("", "", 0)


def test_a_writer_comes_before_later_readers_but_not_before_those_who_are_in():
    lock, order = SharedLock(), []

    def write():
        with lock.writing, lock.writing, lock:
            order.append("writer")

    def read():
        with lock:
            order.append("later reader")

    writer, reader = threading.Thread(target=write), threading.Thread(target=read)
    with lock:
        writer.start()
        while not lock._waiting:
            time.sleep(0)
        reader.start()
        with lock:  # again, while a writer waits
            order.append("reader")
    writer.join()
    reader.join()
    assert order == ["reader", "writer", "later reader"]


def test_many_threads_check_with_one_validator(validator):
    good, bad = ROUTER, ROUTER.replace("9000", "9001")

    def check():
        for _ in range(50):
            assert validator.check(good).to_json()
            assert len(validator.check(bad).errors) == 1

    run_threads(*[check] * 8)


def test_readers_and_those_who_change_a_context_wait_for_each_other():
    context = zrschema.Context([EXAMPLES / "modules"])
    context.load("example-routing")
    is_over = threading.Event()

    def read():
        while not is_over.is_set():
            try:
                for module in context:
                    for node in module.walk():
                        node.path, node.type, node.default
                zrschema.Validator(context).check(ROUTER).to_xml()
                assert context.validate_rpc((EXAMPLES / "requests" / "ping.xml").read_text())
            except zrschema.StaleError:
                pass

    def change():
        try:
            for _ in range(8):
                context.load("example-vendor")
                context.unload("example-vendor")
                context["example-router"].enable_feature("*")
        finally:
            is_over.set()

    run_threads(read, read, read, change)
    assert "example-vendor" not in context
    context.close()


def test_closing_waits_for_the_checks_that_run(context, validator):
    started = threading.Barrier(5)

    def check():
        started.wait()
        with pytest.raises(ValueError, match="closed"):
            while True:
                validator.check(ROUTER)

    def close():
        started.wait()
        validator.check(ROUTER)
        context.close()

    run_threads(check, check, check, check, close)


def test_threads_take_turns_with_a_workspace():
    with zrschema.Workspace([EXAMPLES / "modules"]) as workspace:
        expected = workspace.prepare("example-router")

        def prepare():
            for _ in range(10):
                assert workspace.prepare("example-router") == expected

        run_threads(*[prepare] * 4)
