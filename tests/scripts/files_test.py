"""What scripts do with files and folders, and may not."""

# SPDX-License-Identifier: MIT

import os
import unittest

from program import ScriptCase

WHERE_TO_READ = ("scripts may read only in content folders, the script's own, the temporary folder and those that "
                 "--allow-files names")
WHERE_TO_WRITE = "scripts may write only into content folders, the temporary folder and those that --allow-files names"


class FilesTest(ScriptCase):
    def setUp(self):
        super().setUp()
        self.content = self.folder / "library"
        self.content.mkdir()

    def out_of(self, text, *arguments):
        return super().out_of(text, "--content", self.content, *arguments)

    def test_a_file_is_written_and_read_back(self):
        self.assertEqual(self.out_of("""
            var file = new DzFile(getArguments()[0]);
            print(file.exists(), file.open(DzFile.WriteOnly), file.writeLine('Größe'), file.write('a\\r\\nb'), file.exists());
            print(file.close(), file.exists(), file.isOpen());
            print(file.open(DzFile.Append), file.write('c'), file.close());
            print(file.open(), file.readLine(), file.atEnd(), file.readLines().join('+'), file.atEnd(), file.read() == '');
            file.close(); file.open(DzFile.ReadOnly); print(file.read().length);
            """, self.content / "a.txt"), "false true true true false\ntrue true false\ntrue true true\n"
            "true Größe false a+bc true true\n11\n")
        self.assertEqual((self.content / "a.txt").read_bytes(), "Größe\na\r\nbc".encode())

    def test_what_is_not_closed_is_written_at_the_end(self):
        self.out_of("var f = new DzFile(getArguments()[0]); f.open(DzFile.WriteOnly); f.write('kept');", self.content / "a.txt")
        self.assertEqual((self.content / "a.txt").read_text(), "kept")

    def test_failures_are_false_with_a_reason(self):
        self.write("library/old.txt", "old")
        self.assertEqual(self.out_of("""
            var lost = new DzFile(getArguments()[0] + '/lost.txt');
            print(lost.open(), lost.error());
            print(lost.remove(), lost.error());
            print(lost.write('x'), lost.error());
            print(lost.read() == '', lost.error());
            var folder = new DzFile(getArguments()[0]);
            print(folder.open(DzFile.WriteOnly), folder.error());
            var old = new DzFile(getArguments()[0] + '/old.txt');
            print(old.open(), old.open(), old.error());
            print(old.write('x'), old.error(), old.remove(), old.exists());
            """, self.content), f"""\
false cannot read {self.content}/lost.txt: No such file or directory
false cannot remove {self.content}/lost.txt: No such file or directory
false {self.content}/lost.txt is not open for writing
true {self.content}/lost.txt is not open for reading
false cannot write {self.content}: Is a directory
true false {self.content}/old.txt is open already
false {self.content}/old.txt is not open for writing true false
""")
        self.assertEqual(self.error_of("new DzFile('a').open(7)"), "line 1: RangeError: 7 is no way to open a file.")

    def test_where_nothing_can_be_written_is_told_when_a_file_is_opened(self):
        os.symlink("gone/new.txt", self.content / "lost.txt")
        os.symlink("new.txt", self.content / "link.txt")
        self.write("library/plain", "")
        self.assertEqual(self.out_of("""
            ['lost.txt', 'gone/new.txt', 'plain/new.txt'].forEach(function(name) {
                [DzFile.WriteOnly, DzFile.Append].forEach(function(mode) {
                    var file = new DzFile(getArguments()[0] + '/' + name);
                    print(file.open(mode), file.isOpen(), file.error());
                });
            });
            var made = new DzFile(getArguments()[0] + '/link.txt');
            print(made.open(DzFile.WriteOnly), made.write('x'), made.close());
            """, self.content), f"""\
false false cannot write {self.content}/lost.txt: the link {self.content}/lost.txt leads to gone/new.txt, which is not there
false false cannot write {self.content}/lost.txt: the link {self.content}/lost.txt leads to gone/new.txt, which is not there
false false cannot write {self.content}/gone/new.txt: No such file or directory
false false cannot write {self.content}/gone/new.txt: No such file or directory
false false cannot write {self.content}/plain/new.txt: Not a directory
false false cannot write {self.content}/plain/new.txt: Not a directory
true true true
""")
        self.assertEqual((self.content / "new.txt").read_text(), "x")
        self.assertTrue((self.content / "link.txt").is_symlink())

    def test_files_and_folders_tell_of_themselves(self):
        self.write("library/sub/b.duf", "12345")
        self.write("library/sub/a.duf", "")
        self.write("library/sub/c.txt", "")
        self.write("library/sub/below/d.duf", "")
        self.assertEqual(self.out_of("""
            var info = new DzFileInfo(getArguments()[0] + '/sub/b.duf');
            print(info.exists(), info.isFile(), info.isDir(), info.size(), info.fileName(), info.baseName(), info.suffix());
            print(info.lastModified() instanceof Date, info.path() == getArguments()[0] + '/sub');
            var dir = new DzDir(getArguments()[0]);
            print(dir.exists(), dir.exists('sub'), dir.exists('gone'), dir.cd('gone'), dir.cd('sub'), dir.dirName());
            print(dir.entryList(), '|', dir.entryList(['*.duf'], DzDir.Files), '|', dir.entryList([], DzDir.Dirs));
            print(dir.cdUp(), dir.mkpath('x/y'), dir.exists('x/y'));
            """, self.content), "true true false 5 b.duf b duf\ntrue true\ntrue true false false true sub\n"
            "a.duf,b.duf,below,c.txt | a.duf,b.duf | below\ntrue true true\n")
        self.assertTrue((self.content / "x/y").is_dir())

    def test_what_lies_elsewhere_is_not_read(self):
        secret = self.write("secret.txt", "secret")
        os.symlink(secret, self.content / "link.txt")
        os.symlink(self.folder, self.content / "away")
        script = self.write("own/main.js", "print(eval(getArguments()[0]));")
        for name in (secret, self.content / "link.txt", self.content / "away/secret.txt", self.content / "../secret.txt",
                     "/etc/passwd", "secret.txt", "/proc/self/environ"):
            for use in ("new DzFile('{}').open()", "new DzFile('{}').exists()", "new DzFileInfo('{}').exists()",
                        "new DzFileInfo('{}').size()", "new DzFileInfo('{}').lastModified()", "new DzDir('{}').exists()",
                        "new DzDir('{}').entryList()", "new DzDir('/').exists('{}')", "new DzDir('/').cd('{}')"):
                with self.subTest(use=use, name=name):
                    ended = self.run_script(script, use.format(name), "--content", self.content)
                    self.assertEqual((ended.returncode, ended.stdout), (1, ""))
                    self.assertIn(WHERE_TO_READ, ended.stderr)

    def test_a_step_back_from_a_link_leads_nowhere_else(self):
        (self.content / "a" / "b").mkdir(parents=True)
        os.symlink(self.content / "a" / "b", self.content / "deep")
        script = self.write("own/main.js", "var dir = new DzDir(getArguments()[0]); print(dir.cd('deep/../..'), dir.path());")
        ended = self.run_script(script, self.content, "--content", self.content)
        self.assertEqual((ended.returncode, ended.stdout), (1, ""))
        self.assertIn(WHERE_TO_READ, ended.stderr)

    def test_what_lies_elsewhere_is_not_written(self):
        kept = self.write("kept.txt", "kept")
        os.symlink(kept, self.content / "link.txt")
        os.symlink(self.folder, self.content / "away")
        for name in (kept, self.content / "link.txt", self.content / "away/new.txt", self.content / "../new.txt", "new.txt"):
            for use in ("new DzFile('{}').open(DzFile.WriteOnly)", "new DzFile('{}').open(DzFile.Append)",
                        "new DzFile('{}').remove()", "new DzDir('/').mkpath('{}')"):
                with self.subTest(use=use, name=name):
                    ended = self.run_text("print(eval(getArguments()[0]));", use.format(name), "--content", self.content)
                    self.assertEqual((ended.returncode, ended.stdout), (1, ""))
                    self.assertIn(WHERE_TO_WRITE, ended.stderr)
        self.assertEqual(sorted(os.listdir(self.folder)), ["kept.txt", "library", "script.js"])
        self.assertEqual((self.folder / "kept.txt").read_text(), "kept")

    def test_a_name_with_a_nul_leads_nowhere(self):
        name = f"{self.folder}/new.txt\\0/../library/a"
        for use in ("new DzFile('{}').open(DzFile.WriteOnly)", "new DzFile('{}').open()", "new DzFile('{}').remove()",
                    "new DzFileInfo('{}').exists()", "new DzDir('{}').entryList()", "new DzDir('/').mkpath('{}')"):
            with self.subTest(use=use):
                self.assertEqual(self.error_of(use.format(name), "--content", self.content),
                                 f"line 1: Error: a NUL is in the name that begins with {self.folder}/new.txt.")
        self.assertEqual(sorted(os.listdir(self.folder)), ["library", "script.js"])

    def test_a_link_that_lies_elsewhere_is_not_removed(self):
        kept = self.write("library/kept.txt", "kept")
        os.symlink(kept, self.folder / "link.txt")
        self.assertIn(WHERE_TO_WRITE, self.error_of(f"new DzFile('{self.folder}/link.txt').remove()",
                                                    "--content", self.content))
        self.assertTrue((self.folder / "link.txt").is_symlink())
        os.symlink(kept, self.content / "inside.txt")
        self.assertEqual(self.out_of(f"print(new DzFile('{self.content}/inside.txt').remove())"), "true\n")
        self.assertEqual(os.listdir(self.content), ["kept.txt"])

    def test_nobody_waits_for_a_pipe(self):
        os.mkfifo(self.content / "pipe")
        self.assertEqual(self.out_of("""
            var pipe = new DzFile(getArguments()[0]);
            print(pipe.open(), pipe.error());
            print(pipe.open(DzFile.Append), pipe.error());
            """, self.content / "pipe"),
            f"false cannot read {self.content}/pipe: it is no file, but a device, pipe or socket\n"
            f"false cannot read {self.content}/pipe: it is no file, but a device, pipe or socket\n")

    def test_what_is_too_large_is_not_read_as_nothing(self):
        with open(self.content / "large", "wb") as file:
            file.truncate(3 << 30)
        reason = f"cannot read {self.content}/large: 3221225472 bytes are too much for a script, which can read 536870912"
        self.assertEqual(self.out_of("var f = new DzFile(getArguments()[0]); print(f.open(), f.error());",
                                     self.content / "large"), f"false {reason}\n")
        self.assertEqual(self.error_of(f"include('{self.content}/large')", "--content", self.content),
                         f"line 1: Error: include: {reason}.")

    def test_its_own_folder_the_temporary_one_and_named_ones_are_in_reach(self):
        self.write("beside.txt", "beside")
        named = self.folder / "named"
        named.mkdir()
        self.assertEqual(self.out_of("""
            var beside = new DzFile('beside.txt'); beside.open(); print(beside.read());
            [App.getTempFilename() + '.txt', getArguments()[0] + '/a.txt'].forEach(function(name) {
                var file = new DzFile(name);
                print(file.open(DzFile.WriteOnly), file.write('x'), file.close(), file.exists(), new DzFileInfo(name).size());
            });""", named, "--allow-files", named), "beside\ntrue true true true 1\ntrue true true true 1\n")
        self.assertEqual((named / "a.txt").read_text(), "x")

    def test_a_folder_that_is_not_there_is_told(self):
        plain = self.write("plain", "")
        for given, said in (("gone", "there is no such folder"), (plain, "it is no folder")):
            with self.subTest(given):
                ended = self.run_text("print('ran');", "--allow-files", given)
                self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (
                    0, "ran\n", f"gantrel: warning: {given}: {said}, in which scripts may read and write\n"))

    def test_a_folder_is_no_script(self):
        for given, said in ((self.content, "Is a directory"), ("gone.js", "No such file or directory"),
                            (f"{self.write('plain', '')}/a.js", "Not a directory")):
            with self.subTest(given):
                ended = self.run_script(given)
                self.assertEqual((ended.returncode, ended.stdout, ended.stderr),
                                 (1, "", f"gantrel: Cannot read {given}: {said}.\n"))

    def test_a_refusal_can_be_caught(self):
        self.assertEqual(self.out_of("try { new DzFile('/etc/passwd').open(); } catch (error) { print('refused'); }"),
                         "refused\n")


if __name__ == "__main__":
    unittest.main()
