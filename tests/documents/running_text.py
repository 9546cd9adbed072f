"""Commands and options that stand inside of sentences, as readers who copy them take them."""

# SPDX-License-Identifier: MIT

import glob
import os
import re
import subprocess

# What stands for something of the reader's own, by the subcommand that takes it.
FIGURE = '"library/People/Genesis 9/Genesis 9.duf"'
PLACEHOLDERS = {
    ("inspect", "FILE"): FIGURE,
    ("list-dials", "FIGURE.duf"): FIGURE,
    ("script", "FILE"): "make.dsa",
    ("script", "FILE.dsa"): "make.dsa",
    ("batch", "TABLE"): "listed.csv --content library --target " + FIGURE + " --save-library saved --vendor Me --product Mine",
    ("config", "NAME"): "vendor",
    ("", "DIR"): "reports",
}
# Of other programs, which the documents tell about with theirs.
OTHERS = {"--sanitizers", "--tests", "--prefix", "--preset", "--rm", "--joblog", "--resume-failed", "--retries", "--sshlogin",
          "--array", "--keep-going"}


def spans_of(file):
    """What stands between single backticks, outside of blocks."""
    with open(file, encoding="utf-8") as document:
        text = re.sub(r"^```.*?^```", "", document.read(), flags=re.MULTILINE | re.DOTALL)
    text = "\n".join(line for line in text.splitlines() if not re.match(r" {4,}\S", line))
    return re.findall(r"`([^`]+)`", text)


def subcommands(help_of):
    return re.findall(r"^  ([a-z-]+) ", help_of().split("Subcommands:")[1].split("\n\n")[0], re.MULTILINE)


def options_of_help(help_of, desktop):
    told = [help_of(), *(help_of(name) for name in subcommands(help_of)),
            subprocess.run([desktop, "--help"], capture_output=True, text=True, check=True,
                           env=dict(os.environ, QT_QPA_PLATFORM="offscreen")).stdout]
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", "\n".join(told)))


def filled(command):
    """With something that is there in place of words in capitals."""
    words = command.split()
    subcommand = words[1] if words[0] == "gantrel" and len(words) > 1 else ""
    return " ".join(PLACEHOLDERS.get((subcommand, word), word) for word in words)


def to_run(span):
    """The command that a span is; None for other things and for the bare names of programs."""
    if re.match(r"gantrel [a-z-]+$", span):
        return span + " --help"
    if re.match(r"(gantrel|gantrel-desktop) \S", span):
        return filled(span)
    return span if re.match(r"man \S", span) else None


def wrong_options(spans, known):
    """Options by themselves, with what they take: those that no program has."""
    named = [option for span in spans if span.startswith("--") for option in re.findall(r"(?<![\w-])--[a-z][a-z-]*", span)]
    return [option for option in named if option not in known | OTHERS], len(named)


def lost_scripts(spans, source):
    """Scripts that are not there, and options that they do not know."""
    wrong = []
    for span in spans:
        found = re.match(r"(scripts/[\w-]+)(.*)", span)
        if not found:
            continue
        script = os.path.join(source, found[1])
        if not os.path.isfile(script):
            wrong.append(f"there is no {found[1]}")
            continue
        with open(script, encoding="utf-8") as file:
            text = file.read()
        wrong += [f"{found[1]} knows no {option}" for option in re.findall(r"--[a-z-]+", found[2]) if option not in text]
    return wrong


def man_folders(build):
    return glob.glob(f"{build}/apps/documents/made/*/man")


def wrong_in_man(build, names, known):
    """Pages, subcommands and options that the text of pages for man names and that there are not."""
    wrong, pages = [], glob.glob(f"{build}/apps/documents/made/*/man/man1/*.1")
    there = {os.path.basename(page)[:-2] for page in pages}
    for page in pages:
        with open(page, encoding="utf-8") as file:
            text = file.read().replace("\\-", "-")
        page = os.path.basename(page)
        wrong += [f"{page}: there is no page {name}" for name in re.findall(r"\\fB(gantrel[\w-]*)\\fR\(1\)", text) if name not in there]
        wrong += [f"{page}: there is no gantrel {name}" for name in re.findall(r"\bgantrel ([a-z][a-z-]+)", text)
                  if name not in names]
        wrong += [f"{page}: there is no {option}" for option in re.findall(r"(?<![\w-])--[a-z][a-z-]*", text) if option not in known]
    return wrong, len(pages)
