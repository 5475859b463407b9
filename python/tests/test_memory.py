# SPDX-License-Identifier: Apache-2.0
"""Memory: what is dropped is given back, whether or not it was closed."""
import pathlib
import subprocess
import sys

SCENARIO = """
import gc, pathlib, sys
import zrschema
from zrschema._library import engine, ffi

EXAMPLES = pathlib.Path(sys.argv[1])
ROUTER = '{"example-router:router": {"hostname": "a", "max-load": %d}}'


def expect(error, function, *arguments, **options):
    try:
        function(*arguments, **options)
    except error:
        return
    raise AssertionError(f"no {error.__name__}")


def everything(closes):
    context = zrschema.Context([EXAMPLES / "modules"], features=["*"], linear_patterns=True)
    context.load("example-routing")
    context.load("example-services")
    for module in context:
        module.identities, module.imports, module.features, module.extensions, module.tree()
        for node in module.walk():
            node.path, node.musts, node.extensions, node.when, node.default, node.description
            if node.type is not None:
                node.type.patterns, node.type.values, node.type.members, node.type.bounds
    name = context.node("/example-router:router/hostname")
    assert name.accepts("a") and not name.accepts("-")
    expect(zrschema.InvalidValueError, name.check_value, "-")
    expect(zrschema.NotFoundError, context.load, "nothing")
    expect(zrschema.LoadError, context.load_text, "<module/>")
    context.add_source("bad", "module bad { namespace a; prefix b; leaf c { type d; } }")
    expect(zrschema.PrepareError, context.load, "bad")
    ping = (EXAMPLES / "requests" / "ping.xml").read_text()
    assert context.validate_rpc(ping) and not context.validate_rpc(ping.replace("1200", "1500"))
    assert context.validate_notification(EXAMPLES / "requests" / "interface-down.xml")
    validator = zrschema.Validator(context)
    good, bad = validator.check(ROUTER % 5), validator.check(ROUTER % 101)
    assert good and not bad and not validator.check("{") and not validator.check("<a")
    good.to_xml(), good.to_json(zrschema.Defaults.REPORT_ALL), good.to_etree()
    store = validator.datastore(ROUTER % 5)
    validator.check(ping, zrschema.Kind.REQUEST, datastore=store)
    expect(ValueError, validator.check, "<a/>", zrschema.Kind.REPLY, operation="nothing")
    with zrschema.Workspace([EXAMPLES / "modules"]) as workspace:
        workspace.modules(), workspace.dependencies("example-router")
    assert zrschema.Matcher("a*").matches("aa")
    context.unload("example-routing")
    expect(zrschema.StaleError, validator.check, ROUTER % 5)
    if closes:
        context.close()
    cycle = [context, good, validator, name]
    cycle.append(cycle)
"""

COUNT_BLOCKS = SCENARIO + """
import cffi
system = cffi.FFI()
system.cdef("void *malloc(size_t); void *realloc(void *, size_t); void free(void *);")
libc = system.dlopen(None)
live = set()
number = lambda block: int(ffi.cast("uintptr_t", block))
pointer = lambda block: ffi.cast("void *", number(system.cast("uintptr_t", block)))

@ffi.callback("ZrMallocFunc")
def allocate(size):
    block = ffi.cast("void *", int(system.cast("uintptr_t", libc.malloc(size))))
    live.add(number(block))
    return block

@ffi.callback("ZrReallocFunc")
def change(block, size):
    live.discard(number(block))
    moved = libc.realloc(system.cast("void *", number(block)), size)
    block = ffi.cast("void *", int(system.cast("uintptr_t", moved)))
    live.add(number(block))
    return block

@ffi.callback("ZrFreeFunc")
def release(block):
    live.remove(number(block))
    libc.free(system.cast("void *", number(block)))

assert engine.ZR_MemRegisterCallBack(allocate, change, release) == zrschema.Status.OK
probe = zrschema.Context()
assert live
probe.close()
for closes in (True, False):
    everything(closes)
    gc.collect()
    assert not live, f"{len(live)} blocks are left"
"""

COMPARE_HEAPS = SCENARIO + """
import ctypes

class Info(ctypes.Structure):
    _fields_ = [(name, ctypes.c_size_t) for name in (
        "arena", "ordblks", "smblks", "hblks", "hblkhd", "usmblks", "fsmblks", "uordblks",
        "fordblks", "keepcost")]

mallinfo = ctypes.CDLL(None).mallinfo2
mallinfo.restype = Info

def held():
    gc.collect()
    info = mallinfo()
    return info.uordblks + info.hblkhd

for i in range(10):
    everything(i % 2 == 0)
before = held()
for i in range(40):
    everything(i % 2 == 0)
grown = held() - before
print(grown)
"""


AT_THE_END = SCENARIO + """
context = zrschema.Context([EXAMPLES / "modules"])
context.load("example-routing")
result = zrschema.Validator(context).check(ROUTER % 5)
kept = [context, result, context.node("/example-router:router"), zrschema.Matcher("a"),
        zrschema.Workspace(), zrschema._data, zrschema._library]
kept.append(kept)
sys.modules["kept"] = kept
"""


def run(script):
    examples = pathlib.Path(__file__).resolve().parents[2] / "examples"
    return subprocess.run([sys.executable, "-c", script, examples], capture_output=True, text=True,
                          timeout=600)


def test_no_block_of_the_engine_is_left_when_all_is_dropped():
    result = run(COUNT_BLOCKS)
    assert (result.stdout, result.stderr, result.returncode) == ("", "", 0)


def test_the_interpreter_may_end_with_objects_that_live():
    result = run(AT_THE_END)
    assert (result.stdout, result.stderr, result.returncode) == ("", "", 0)


def test_rounds_of_everything_hold_no_more_than_the_first():
    # All libraries, libxml2 and the interpreter's larger blocks are in this; the smallest context
    # alone has 2 KiB, so that one lost in each round would be 80.
    result = run(COMPARE_HEAPS)
    assert (result.stderr, result.returncode) == ("", 0)
    assert int(result.stdout) < 20_000
