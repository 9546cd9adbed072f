// Tables of conversions as spreadsheets and scripts write them.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"

#include <string>

namespace {

class BatchTable : public ::testing::Test {
protected:
    ProgramResult listed(const std::string& text, const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> arguments{"batch", workspace.write("jobs", text), "--list"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunProgram(arguments);
    }
    void expectCommands(const std::string& table, const std::string& commands,
                        const std::vector<std::string>& more = {}) const
    {
        const ProgramResult result = listed(table, more);
        ExpectSuccess(result);
        EXPECT_EQ(result.out, commands);
    }
    /// Each problem is told with its line, and the last line sums up.
    void expectRefusal(const ProgramResult& result, const std::vector<std::string>& problems) const
    {
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        std::string told;
        for (const std::string& problem : problems)
            told += "gantrel: error: " + workspace.path("jobs") + ": " + problem + '\n';
        told += "gantrel: " + workspace.path("jobs") + ": " + std::to_string(problems.size()) +
                " things are wrong, so nothing was begun.\n";
        EXPECT_EQ(result.err, told);
    }
    void expectRefusal(const std::string& table, const std::string& problem,
                       const std::vector<std::string>& more = {}) const
    {
        ExpectError(listed(table, more), 2, workspace.path("jobs") + ": " + problem + '.');
    }

    Workspace workspace;
};

const std::vector<std::string> saving{"--save-library", "/shapes", "--vendor", "Acme", "--product", "Heroes"};
const std::string saved = "--save-library=/shapes --vendor=Acme --product=Heroes";

std::vector<std::string> Saving(std::vector<std::string> more)
{
    more.insert(more.end(), saving.begin(), saving.end());
    return more;
}

} // namespace

TEST_F(BatchTable, becomes_commands_that_a_shell_takes)
{
    expectCommands("source,target,name\n/a b/c.duf,/t.duf,Vera's\n",
                   "gantrel convert --source='/a b/c.duf' --target=/t.duf --name='Vera'\\''s'\n");
}

TEST_F(BatchTable, may_come_from_a_spreadsheet)
{
    expectCommands("\xEF\xBB\xBFSource;Target;Save Library;Vendor;product;adjust_rig;--name;\r\n"
                   "a;t;/lib;V;P;Yes;\"x;\"\"y\"\"\";\r\n"
                   "\r\n"
                   ";;;;;;;\r\n"
                   "b;t;/lib;V;P;no;\" z \";\r\n",
                   "gantrel convert --source=a --target=t --name='x;\"y\"' --adjust-rig --save-library=/lib "
                   "--vendor=V --product=P\n"
                   "gantrel convert --source=b --target=t --name=' z ' --save-library=/lib --vendor=V "
                   "--product=P\n");
    expectCommands("source\ttarget\rc,d\tt\r", "gantrel convert --source=c,d --target=t\n");
}

TEST_F(BatchTable, keeps_blanks_around_words_and_drops_them_around_all_else)
{
    expectCommands(" source , target ,morphs,suffix,vendor\n a , \"t \", Wide ; Bulge , New, My Shop \n"
                   "a,t,W*,   ,V\na,t,W*, \"two\n , lines\" ,V\n",
                   "gantrel convert-morphs --source=a --target='t ' --suffix=' New' --save-library=/lib "
                   "--vendor='My Shop' --product=P --morphs=Wide --morphs=Bulge\n"
                   "gantrel convert-morphs --source=a --target=t --save-library=/lib --vendor=V --product=P "
                   "--morphs='W*'\n"
                   "gantrel convert-morphs --source=a --target=t --suffix='two\n , lines' "
                   "--save-library=/lib --vendor=V --product=P --morphs='W*'\n",
                   {"--save-library", "/lib", "--product", "P"});
}

TEST_F(BatchTable, divides_several_dials_in_a_cell)
{
    expectCommands("dial,source,target,base\n\"Wide=1; Bulge=0.5\",a,t,clone=1;height=auto\n",
                   "gantrel convert --source=a --dial=Wide=1 --dial=Bulge=0.5 --target=t --base=clone=1 "
                   "--base=height=auto\n");
}

TEST_F(BatchTable, takes_what_its_rows_leave_open_from_the_command_line)
{
    expectCommands("source,name,overwrite,dial\na,A,,\nb,B,no,X=2\n",
                   "gantrel convert --source=a --dial=Wide=1 --target=t --name=A --save-library=/shapes "
                   "--vendor=Acme --product=Heroes --overwrite\n"
                   "gantrel convert --source=b --dial=X=2 --target=t --name=B --save-library=/shapes "
                   "--vendor=Acme --product=Heroes\n",
                   {"--target", "t", "--save-library", "/shapes", "--vendor", "Acme", "--product", "Heroes",
                    "--overwrite", "--dial", "Wide=1"});
}

TEST_F(BatchTable, may_be_a_list_of_objects)
{
    expectCommands(R"( [{"source": "a", "target": "t", "dial": {"Wide": 1, "Bulge": 0.5}, "compress": false,
                         "accept_missing": true, "name": null},
                        {"source": "b", "target": "t", "dial": ["a;b=1", "Y=0"], "resolution": "subd", "subd": 2}])",
                   "gantrel convert --source=a --dial=Wide=1 --dial=Bulge=0.5 --target=t --accept-missing\n"
                   "gantrel convert --source=b --dial='a;b=1' --dial=Y=0 --target=t --resolution=subd "
                   "--subd=2\n");
}

TEST_F(BatchTable, may_have_rows_of_single_morphs)
{
    expectCommands("source,morphs,list,value,command,name,adjust-rig\n"
                   "a,PHM*; Long Nose,,2,,,no\n"
                   "a,,n.txt,,convert-morphs,,\n"
                   "a,,,,convert,Vera,yes\n",
                   "gantrel convert-morphs --source=a --target=t --suffix=' G8' --value=2 " + saved +
                       " --morphs='PHM*' --morphs='Long Nose'\n"
                       "gantrel convert-morphs --source=a --target=t --suffix=' G8' " +
                       saved +
                       " --list=n.txt\n"
                       "gantrel convert --source=a --target=t --name=Vera --adjust-rig " +
                       saved + "\n",
                   Saving({"--target", "t", "--suffix", " G8"}));
    expectCommands("source,list\na,\nb,n.txt\n",
                   "gantrel convert-morphs --source=a --target=t " + saved +
                       " --morphs='*'\n"
                       "gantrel convert-morphs --source=b --target=t " +
                       saved + " --list=n.txt\n",
                   Saving({"--target", "t", "--morphs", "*"}));
}

TEST_F(BatchTable, is_refused_with_cells_that_a_row_has_no_use_for)
{
    expectRefusal(listed("source,morphs,list,name,command,subd\n"
                         "a,*,,x,,2\n"
                         "b,,,,convert-morphs,\n"
                         "c,x,l,,,\n"
                         "d,*,,,convert,\n"
                         "e,*,,,frob,\n",
                         Saving({"--target", "t"})),
                  {"line 2: name is nothing that convert-morphs knows, which this row is of",
                   "line 2: subd is nothing that convert-morphs knows, which this row is of",
                   "line 3: --morphs or --list is required", "line 4: morphs and list exclude each other",
                   "line 5: morphs is nothing that convert knows, which this row is of",
                   "line 6: the command is \"frob\"; it can be convert or convert-morphs"});
}

TEST_F(BatchTable, is_refused_when_two_rows_would_convert_the_same_morphs)
{
    expectRefusal("source,target,morphs,suffix\na,t,y;*,\na,t,y,2\nb,t,y,\na,t,y,\n",
                  "line 5: would write the morphs \"y\" of a, as line 2 does", saving);
}

TEST_F(BatchTable, is_refused_as_a_whole_with_every_line_that_is_wrong)
{
    expectRefusal(listed("source,target,subd,resolution,dial,vendor\n"
                         "a,t,9,subd,,\n"
                         "\"of two\nlines\",,,,,\n"
                         "b,t,2,base,,\n"
                         "\nc,t,,,Wide,\n"
                         "d,t,,,,Acme\n"
                         "e,t,,,,,more\n"),
                  {"line 2: --subd: Value 9 not in range 1 to 5", "line 3: --target is required",
                   "line 5: --subd needs --resolution subd",
                   "line 7: --dial: \"Wide\" is not of the form NAME=VALUE",
                   "line 8: --vendor requires --save-library",
                   "line 9: \"more\" in cell 7 is in no column that has a name"});
}

TEST_F(BatchTable, is_refused_with_columns_that_nobody_knows_or_that_are_there_twice)
{
    const ProgramResult result = listed("\nsource,target,colour,source,adjust-rig\na,t,red,b,perhaps\n");
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(
        result.err.find(": line 2: there is no column called \"colour\"; those known are content, source,"),
        std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find(": line 2: there are two columns \"source\"\n"), std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find(": line 3: adjust-rig is \"perhaps\"; it can be yes or no\n"),
              std::string::npos)
        << result.err;
}

TEST_F(BatchTable, is_refused_when_two_rows_would_write_the_same_file)
{
    expectRefusal("source,target,name\na,t,Vera\nb,u,VERA\n",
                  "line 3: would write the morph \"VERA Head\", as line 2 does", saving);
}

TEST_F(BatchTable, refuses_objects_with_their_lines)
{
    expectRefusal(listed("[{\"source\": \"a\", \"target\": \"t\"},\n"
                         "{\"source\": \"[{\", \"source\": \"b\",\n \"target\": \"t\"}, 7,\n\n"
                         "{\"target\": \"t\", \"source\": [1]}\n]"),
                  {"line 2: \"source\" is there twice", "line 3: this is no object, as rows are",
                   "line 5: source is \"[1]\", which is neither a text nor a number",
                   "line 5: --source is required"});
    expectRefusal("[{\"source\": \"a\"},\n\n{\"target\" \"t\"}]", "line 3: this is no JSON");
    expectRefusal("[{\"subd\": 1e999}]", "line 1: the list holds a number that is too large for any use");
}

TEST_F(BatchTable, refuses_what_is_no_text)
{
    expectRefusal(std::string("source\n\xFF\n"), "line 2: is not UTF-8");
    expectRefusal(std::string("source\nb\0c\n", 11), "line 2: has a zero byte, which no text has");
    expectRefusal(std::string("\xFF\xFEs\0", 4), "line 1: the text is UTF-16; it has to be UTF-8");
    expectRefusal("source,target\n\n\"a,t\n\n",
                  "line 3: the quotation mark at the beginning of a cell has no other one at its end");
    expectRefusal("source,target\na,5\" t\n",
                  "line 2: a quotation mark stands where none may; a cell with one has quotation marks "
                  "around it, and two for each in it");
    expectRefusal("", "line 1: there is no line with the names of columns");
    expectRefusal("source,target\n\n", "has no rows");
}

TEST_F(BatchTable, that_is_not_there_is_told)
{
    ExpectError(RunProgram({"batch", workspace.path("none.csv"), "--list"}), 1,
                "Cannot read " + workspace.path("none.csv") + ": No such file or directory.");
}

TEST_F(BatchTable, that_never_ends_is_refused)
{
    ExpectError(RunProgram({"batch", "/dev/zero", "--list"}), 1, "/dev/zero: is larger than 67108864 bytes.");
}
