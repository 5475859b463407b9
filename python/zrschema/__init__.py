# SPDX-License-Identifier: Apache-2.0
"""YANG modules: loading, asking, checking data.

>>> import zrschema
>>> context = zrschema.Context()
>>> context.add_source("box", '''module box {
...   namespace "urn:box"; prefix b;
...   container box {
...     leaf size { type uint8 { range "1..9"; } default 3; }
...   }
... }''')
>>> print(context.load("box").tree(), end="")
module: box
+--rw box
   +--rw size?   uint8 <3>
>>> context.node("/box:box/size").accepts("10")
False
>>> result = zrschema.Validator(context).check('{"box:box": {"size": 10}}')
>>> result.errors[0].message
'"10" is no value of "size": it is out of range'
>>> context.close()
"""
from ._constants import *  # noqa: F401,F403
from ._constants import VERSION as __version__
from ._constants import __all__ as _numbers
from ._context import Context
from ._data import Datastore, Fault, InvalidDataError, PlanProblem, Result, Validator
from ._errors import (Error, InvalidValueError, LibraryError, LoadError, NotFoundError,
                      PrepareError, Problem, StaleError)
from ._library import version
from ._messages import RpcError, Verdict
from ._module import Deviation, Identity, Import, Module
from ._node import Extension, Must, Node
from ._patterns import Matcher
from ._sources import Workspace
from ._type import Bound, Pattern, Type

__all__ = [
    "Bound", "Context", "Datastore", "Deviation", "Error", "Extension", "Fault", "Identity",
    "Import", "InvalidDataError", "InvalidValueError", "LibraryError", "LoadError", "Matcher",
    "Module", "Must", "Node", "NotFoundError", "Pattern", "PlanProblem", "PrepareError", "Problem",
    "Result", "RpcError", "StaleError", "Type", "Validator", "Verdict", "Workspace",
    "__version__", "version", *_numbers,
]

for _name in __all__:  # which is where everybody finds them, whatever file they stand in
    if isinstance(globals()[_name], type):
        globals()[_name].__module__ = __name__
del _name
