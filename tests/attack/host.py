# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""The program attack-host, which reads, changes and writes files: in $PATH, or in build/release."""

import json
import os
import shutil
import subprocess

PROGRAM = shutil.which("attack-host") or os.path.join(
    os.path.dirname(os.path.realpath(__file__)), "../../build/release/tests/attack/attack-host")


class Host:
    def __init__(self, *before, **options):
        self.process = subprocess.Popen([*before, PROGRAM], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, **options)

    def say(self, *words):
        self.process.stdin.write(json.dumps(words).encode() + b"\n")
        self.process.stdin.flush()

    def hear(self):
        return json.loads(self.process.stdout.readline())[0]

    def ask(self, *words):
        """What comes of a command; where nothing can, for it has crashed, BrokenPipeError or ValueError."""
        self.say(*words)
        return self.hear()

    def close(self):
        self.process.communicate()
