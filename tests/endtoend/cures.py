"""The cures that the programs tell, from the source that they have them from."""

import importlib.machinery
import importlib.util

from system import ROOT


def _tool():
    loader = importlib.machinery.SourceFileLoader("cures_tool", str(ROOT / "tools" / "cures"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("cures_tool", loader))
    loader.exec_module(module)
    return module


CURES = {number: cure for number, _, _, cure in _tool().tables()["Gateway"]}
