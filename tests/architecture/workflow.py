#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks the workflows of hosted machines: their form, and that each command they run is one of ours.

    workflow.py SOURCE-ROOT
"""
import json
import re
import sys
from pathlib import Path

try:
    import yaml
except ImportError:
    print("skipped: python3-yaml is not installed")
    sys.exit(77)

root = Path(sys.argv[1])
faults = []
workflows = sorted((root / ".github/workflows").glob("*.yml"))
if not workflows:
    faults.append("no workflow was found")
presets = {preset["name"] for preset in json.loads((root / "CMakePresets.json").read_text())["configurePresets"]}

for path in workflows:
    workflow = yaml.safe_load(path.read_text())
    # YAML 1.1 reads the key "on" as true.
    for key in ("name", True, "permissions", "jobs"):
        if key not in workflow:
            faults.append(f"{path.name}: the key {'on' if key is True else key} is missing")
    for name, job in workflow["jobs"].items():
        for key in ("runs-on", "container", "timeout-minutes", "steps"):
            if key not in job:
                faults.append(f"{path.name}: {name} has no {key}")
        ours = 0
        for step in job["steps"]:
            if ("run" in step) == ("uses" in step):
                faults.append(f"{path.name}: a step of {name} has not either run or uses")
            if "uses" in step and not re.fullmatch(r"[\w-]+/[\w-]+@v\d+", step["uses"]):
                faults.append(f"{path.name}: {step['uses']} has no version")
            for command in re.findall(r"(?:scripts/|\.ci/)\S+", step.get("run", "")):
                ours += 1
                if not (root / command).is_file():
                    faults.append(f"{path.name}: {command} is not there")
            for word in re.findall(r"packages[\w-]*\.txt", step.get("run", "")):
                if not (root / word).is_file():
                    faults.append(f"{path.name}: {word} is not there")
            for word in re.findall(r"--preset (\S+)", step.get("run", "")):
                if word not in presets:
                    faults.append(f"{path.name}: there is no preset {word}")
        if not ours:
            faults.append(f"{path.name}: {name} runs nothing of the project")

for fault in faults:
    print(fault)
sys.exit(1 if faults else 0)
