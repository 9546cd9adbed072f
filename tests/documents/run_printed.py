"""Runs every command line that the documents print, as a reader would who copies it into a shell.

run_printed.py SOURCE BUILD GANTREL GANTREL_DESKTOP: README.md, the pages in docs, the chapters of the manual, in blocks and
in running text, and the examples of --help, which pages for man are to have too. A reader has a home folder with the sample library, and a checkout
with its build. What would change the machine is not run; it is named, with who runs it instead.
"""

# SPDX-License-Identifier: MIT

import glob
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

import running_text

SOURCE, BUILD, GANTREL, DESKTOP = sys.argv[1:5]

# What a block of a document begins with that is no command.
DATA = ("{", "vertex,", "source,", "import ", "with gantrel", "source = gantrel", "data/", "var ", '"Kestrom')

# Commands that are not run here, by the pattern that they match, and why. Files that they name have to be there.
NOT_RUN = [
    (r"sudo ", "changes the machine; scripts/test-install installs and purges"),
    (r"podman ", "wants a container's engine"),
    (r"scripts/(setup|demo|test|build|package|release-sources)\b",
     "builds or packs the whole; done before a test run, or by a test of its own"),
    (r"cmake |build/carry_morph/", "the tests of the installation build the examples"),
    (r"cp -r /usr/share/doc/gantrel/examples", "wants the package; scripts/test-install runs it"),
    (r"(examples/clusters|seq|snakemake) ?.*SETTINGS|snakemake ", "the tests of clusters run the recipes"),
]
COLUMNS_OF_PAGE = 80 - 7  # beside its margin
RUN = r"gantrel(-desktop)? |export |mkdir |options=|figures=|python3 |PYTHONPATH="


def commands_of(lines):
    """Joins what a backslash continues, and leaves remarks out."""
    text = re.sub(r"\\\n\s*", "", "\n".join(lines))
    return [command for command in (re.sub(r"\s+# .*$", "", line).strip() for line in text.splitlines()) if command]


def blocks_of(file):
    """Blocks between fences, and those that are set in by four columns, also below the item of a list."""
    blocks, block, fenced = [], [], False
    with open(file, encoding="utf-8") as document:
        lines = document.read().splitlines()
    for line in lines + [""]:
        fence = line.startswith("```")
        inside = not fence and (fenced or re.match(r" {4,}\S", line))
        if inside:
            block.append(line if fenced else line.strip())
        elif block:
            blocks.append(block)
            block = []
        fenced ^= fence
    return blocks


def help_of(*subcommand):
    return subprocess.run([GANTREL, *subcommand, "--help"], capture_output=True, text=True, check=True).stdout


def examples_of_help():
    """Of both programs and each subcommand, by the name of its page: the lines that are set in below the heading."""
    desktop = subprocess.run([DESKTOP, "--help"], capture_output=True, text=True, check=True).stdout
    helps = {"gantrel": help_of(), "gantrel-desktop": desktop, **{f"gantrel-{name}": help_of(name) for name in running_text.subcommands(help_of)}}
    found = {page: re.search(r"^Example:\n((?:  .*\n?)+)", text, re.MULTILINE) for page, text in helps.items()}
    return {page: [line[2:] for line in example.group(1).splitlines()] if example else [] for page, example in found.items()}


def examples_of_man(page):
    [page] = glob.glob(f"{BUILD}/apps/documents/made/*/man/man1/{page}.1")
    with open(page, encoding="utf-8") as file:
        text = re.search(r"\.EX\n(.*?)\n\.EE", file.read(), re.DOTALL).group(1)
    for written, meant in (("\\-", "-"), ("\\e", "\\"), ("\\&", "")):
        text = text.replace(written, meant)
    return [line for line in text.splitlines() if line.strip()]


class Reader:
    """A reader's home folder and checkout."""

    def __init__(self, folder):
        self.folder = folder
        self.samples = os.path.join(folder, "samples")
        subprocess.run([GANTREL, "sample-content", self.samples], check=True, stdout=subprocess.DEVNULL,
                       env=self.environment("/nowhere"))
        programs = os.path.join(folder, "bin")
        os.mkdir(programs)
        os.symlink(GANTREL, os.path.join(programs, "gantrel"))
        desktop = os.path.join(programs, "gantrel-desktop")
        with open(desktop, "w", encoding="utf-8") as file:
            file.write(f"""#!/bin/bash
# The application, until it has opened and loaded its plug-in.
{shlex.quote(DESKTOP)} "$@" & pid=$!
for _ in $(seq 600); do
    grep -q /plugins/libgantrel /proc/$pid/maps && {{ kill $pid; exit 0; }}
    kill -0 $pid 2>/dev/null || break
    sleep 0.1
done
wait $pid
echo "it did not open" >&2
exit 1
""")
        os.chmod(desktop, 0o755)

    def environment(self, home):
        kept = {name: os.environ[name] for name in ("LANG", "LC_ALL", "ASAN_OPTIONS", "TSAN_OPTIONS") if name in os.environ}
        return dict(kept, HOME=home, PATH=f"{self.folder}/bin:/usr/bin:/bin", QT_QPA_PLATFORM="offscreen",
                    TMPDIR=self.folder, MANPATH=":".join(running_text.man_folders(BUILD)), MANPAGER="cat", XDG_CACHE_HOME=f"{self.folder}/cache", XDG_RUNTIME_DIR=self.folder)

    def copy_samples(self, folder):
        """Files are linked, which is quick; whoever changes one puts another into its place."""
        shutil.copytree(self.samples, folder, copy_function=os.link)

    def begin(self):
        """A home and a checkout as new, for a document."""
        home, checkout = os.path.join(self.folder, "home"), os.path.join(self.folder, "home", "checkout")
        shutil.rmtree(home, ignore_errors=True)
        os.makedirs(os.path.join(checkout, "build"))
        for name in ("more-content", "Shapes", "reports"):
            os.mkdir(os.path.join(home, name))
        self.copy_samples(os.path.join(home, "library"))
        self.copy_samples(os.path.join(checkout, "build", "demo", "library"))
        os.symlink(os.path.join(home, "library"), os.path.join(home, "Content"))
        os.symlink(os.path.join(home, "library"), os.path.join(checkout, "library"))
        os.symlink(BUILD, os.path.join(checkout, "build", "release"))
        for name in ("docs", "examples", "plugin", "scripts"):
            os.symlink(os.path.join(SOURCE, name), os.path.join(checkout, name))
        self.write_files(checkout)
        self.home, self.checkout = home, checkout

    @staticmethod
    def write_files(folder):
        """Small files of the names that examples have; formats are those of the manual's own chapter."""
        square = "v -10 0 0\nv 10 0 0\nv 10 20 0\nv -10 20 0\n"
        faces, smile = "f 1 2 3 4\n", square.replace("20 0\n", "20 1\n")
        bones, weights, deltas, head = figure_formats()
        for name, text in {
                "neutral.obj": square + faces, "old.obj": square + faces, "new.obj": square + faces,
                "smile.obj": smile, "old-smile.obj": smile + faces,
                "bones.json": bones, "weights.json": weights, "frown.csv": deltas.split("\n")[0] + "\n2,0,1,0\n",
                "head.csv": head, "listed.csv": JOBS, "make.dsa": "print('made');\n", "report.dsa": "print('reported');\n"}.items():
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write(text)
        subprocess.run(["gzip", "--keep", os.path.join(folder, "weights.json")], check=True)

    def run(self, commands):
        # A figure's name alone is one in the folder that the reader is in.
        inside = any(re.search(r" Vera\.duf", command) for command in commands)
        folder = os.path.join(self.checkout, "library/People/Genesis 8 Female/Characters") if inside else self.checkout
        return subprocess.run(["bash", "-c", "set -e -o pipefail\n" + "\n".join(commands)], cwd=folder, text=True,
                              env=self.environment(self.home), stdin=subprocess.DEVNULL, capture_output=True, timeout=600)


def figure_formats():
    """The examples in the chapter about figures of one's own: skeleton, weights, deltas, head split."""
    blocks = ["\n".join(block) + "\n" for block in blocks_of(os.path.join(SOURCE, "docs/manual/12-own-figures.md"))]
    pick = lambda start: next(block for block in blocks if block.startswith(start))
    return pick('{\n  "bones"'), pick('{\n  "vertex_count"'), pick("vertex,dx"), pick("vertex,weight")


JOBS = ("source,jobs,name\n"
        "library/People/Genesis 8 Female/Characters/Vera.duf,full,Vera\n")


def files_are_there(command):
    """Whatever of the sources a command names that is not run."""
    named = re.findall(r"(?:scripts|examples|bench)/[\w./-]+", command)
    return [name for name in named if not os.path.exists(os.path.join(SOURCE, name))]


class Run:
    def __init__(self, reader):
        self.reader, self.failures, self.ran, self.left = reader, [], 0, {}
        self.inline, self.options = 0, 0  # in running text

    def document(self, name, blocks):
        self.reader.begin()
        for block in blocks:
            if block[0].startswith(DATA):
                if block[0].startswith("source,"):
                    self.table(name, block)
                continue
            commands = [command for command in commands_of(block) if not self.is_left(name, command)]
            for command in commands:
                if not re.match(RUN, command):
                    self.failures.append(f"{name}: is neither run nor known: {command}")
            commands = [command for command in commands if re.match(RUN, command)]
            if commands:
                self.expect(name, commands)

    def text(self, name, file, known):
        """What stands in sentences: commands run by themselves, options and scripts have to be there."""
        spans = running_text.spans_of(file)
        wrong, options = running_text.wrong_options(spans, known)
        self.options += options
        self.failures += [f"{name}: no program has {option}" for option in wrong]
        self.failures += [f"{name}: {what}" for what in running_text.lost_scripts(spans, SOURCE)]
        for command in sorted({running_text.to_run(span) for span in spans} - {None}):
            self.inline += 1
            self.expect(name, [command])

    def table(self, name, lines):
        """The table that the chapter about batches shows, with the figures that it names."""
        with open(os.path.join(self.reader.checkout, "shown.csv"), "w", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")
        self.expect(name, ['gantrel batch shown.csv --content library --target "library/People/Genesis 9/Genesis 9.duf" '
                           '--save-library shown --vendor Me --product Shown'])

    def is_left(self, name, command):
        for pattern, reason in NOT_RUN:
            if re.match(pattern, command):
                self.failures += [f"{name}: there is no {file}" for file in files_are_there(command)]
                self.left.setdefault(reason, []).append(command)
                return True
        if "apps/python" in command and not glob.glob(f"{BUILD}/apps/python/gantrel/_gantrel*.so"):
            self.left.setdefault("the module for Python is not built", []).append(command)
            return True
        return False

    def expect(self, name, commands):
        ended = self.reader.run(commands)
        self.ran += len(commands)
        if ended.returncode != 0:
            said = (ended.stdout[-1500:] + ended.stderr[-1500:]).strip()
            self.failures.append(f"{name}: ended with {ended.returncode}:\n    " + "\n    ".join(commands) + f"\n{said}")


def main():
    with tempfile.TemporaryDirectory() as folder:
        run = Run(Reader(folder))
        known = running_text.options_of_help(help_of, DESKTOP)
        pages = sorted(glob.glob(f"{SOURCE}/docs/*.md") + glob.glob(f"{SOURCE}/docs/manual/*.md"))
        for file in [os.path.join(SOURCE, "README.md"), *pages]:
            # The Python in that chapter has a test of its own.
            run.document(os.path.relpath(file, SOURCE), blocks_of(file))
            run.text(os.path.relpath(file, SOURCE), file, known)
        run.reader.begin()
        run.text("CONTRIBUTING.md", os.path.join(SOURCE, "CONTRIBUTING.md"), known)
        examples = examples_of_help()
        for page, lines in examples.items():
            if not lines:
                run.failures.append(f"the help of {page} has no example")
                continue
            run.document(f"the help of {page}", [lines])
            if examples_of_man(page) != lines:
                run.failures.append(f"the page {page} has other examples than --help")
            run.failures += [f"the page {page} has an example that 80 columns do not hold:\n    {line}"
                             for line in lines if len(line) > COLUMNS_OF_PAGE]
        told, man_pages = running_text.wrong_in_man(BUILD, running_text.subcommands(help_of), known)
        run.failures += told
    for reason, commands in run.left.items():
        print(f"not run, {reason}:\n    " + "\n    ".join(commands))
    print(f"{run.ran} commands were run, {run.inline} of them of running text, which names {run.options} options")
    print("\n".join(run.failures))
    few = run.ran < 30 or len(examples) < 10 or run.inline < 15 or run.options < 100 or man_pages < 10
    return 1 if run.failures or few else 0


sys.exit(main())
