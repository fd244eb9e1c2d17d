#include "tools/text/OutputFile.h"

#include "tests/tools/cli/ToolRun.h"
#include "tools/text/Failures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace qmv40;
using testing::HasSubstr;

namespace {

const text::FileKind drawingKind = text::KindMarked("a drawing", "our drawing");

TEST(OutputFile, MayBeNewOrEmptyOrOfItsKind) {
    const TemporaryFolder folder;
    const std::string drawing = "<?xml?><!-- our drawing -->\n<svg/>";
    for (const std::string& name : {folder.Name("new"), folder.Write("empty", ""),
                                    folder.Write("drawing", "<!-- our drawing -->\nan older one")}) {
        text::WriteOutput(name, drawing, drawingKind);
        EXPECT_EQ(drawing, ReadFile(name));
    }
}

TEST(OutputFile, ReplacesNoOtherFile) {
    const char* const contents[] = {"A,B,X,Y,Z\n", "<svg/>", "\n", "a line\nour drawing\n", "\x89PNG\r\n\x1A\n"};
    const TemporaryFolder folder;
    for (const char* const content : contents) {
        const std::string name = folder.Write("theirs", content);
        try {
            text::WriteOutput(name, "our drawing", drawingKind);
            ADD_FAILURE() << "replaced: " << content;
        } catch (const text::InputError& error) {
            EXPECT_EQ(name, error.file);
            EXPECT_EQ("is there and is not a drawing: give another name, or remove the file first", error.reason);
        }
        EXPECT_EQ(content, ReadFile(name));
    }
    EXPECT_THROW(text::RequireNewOrOfKind(folder.Name("."), drawingKind), text::InputError);
}

/// Files of several kinds that an output must not replace.
struct OtherFiles {
    explicit OtherFiles(const TemporaryFolder& folder)
        : capture(folder.Write("capture.csv", ReadFile(LoadScenario("plain").aAxis))),
          picture(folder.Write("picture.png", "\x89PNG\r\n\x1A\n")),
          spoiltCapture(folder.Write("spoilt.csv", "A,B,X,Y,Z\n1,2,3,4,5\n[HEADCENTRE]\nX=1\n")),
          otherIni(folder.Write("theirs.ini", "[Window]\nWidth=3\n")),
          otherSettings(folder.Write("theirs.reg", "Windows Registry Editor Version 5.00\n\n"
                                                   "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Other]\n\"a\"=\"b\"\n")),
          geometry(PlainGeometryFile(folder)),
          otherPage(folder.Write("theirs.html", "<!DOCTYPE html>\n<html></html>")) {}

    std::string capture, picture, spoiltCapture, otherIni, otherSettings, geometry, otherPage;
};

TEST(OutputFile, OfACommandNeverReplacesAFileOfAnotherKind) {
    const TemporaryFolder folder;
    const OtherFiles files(folder);
    const std::vector<std::string> all{files.capture,       files.picture,  files.spoiltCapture, files.otherIni,
                                       files.otherSettings, files.geometry, files.otherPage};
    const Scenario plain = LoadScenario("plain");
    const std::vector<std::string> view{"view", "--geometry", files.geometry, "--from", "0,0", "--to", "0,0"};
    const std::string page = folder.Write("template.html", "<!DOCTYPE html>\n@TITLE@ @DOCUMENT@ @DRAWINGS@");
    const struct {
        std::vector<std::string> arguments; ///< up to the name of the output
        std::string own;                    ///< a file that may be replaced
    } commands[] = {
        {plain.GeometryArguments({"--output"}), files.geometry},
        {{"settings", "write", "--set", "drive-cup-x=-7", "--output"}, ""},
        {With(view, {"--template", page, "--output"}), ""},
        {With(view, {"--svg"}), ""},
    };
    for (const auto& command : commands) {
        for (const std::string& name : all) {
            if (name == command.own) continue;
            const std::string before = ReadFile(name);
            const ToolRun run = RunQmv40(With(command.arguments, {name}));
            EXPECT_EQ(3, run.exitCode) << command.arguments.front() << " to " << name;
            EXPECT_THAT(run.err, HasSubstr(name + ": is there and is not a")) << command.arguments.front();
            EXPECT_EQ(before, ReadFile(name)) << command.arguments.front() << " to " << name;
        }
        const std::string fresh = folder.Name("fresh");
        EXPECT_EQ(0, RunQmv40(With(command.arguments, {fresh})).exitCode) << "a new file";
        EXPECT_EQ(0, RunQmv40(With(command.arguments, {fresh})).exitCode) << "its own file, a second time";
        std::filesystem::remove(folder.Path("fresh"));
    }
}

TEST(OutputFile, IsNotWrittenWhenAnotherOutputIsRefused) {
    const TemporaryFolder folder;
    const OtherFiles files(folder);
    const std::string drawingName = folder.Name("drawing.svg");
    const std::string page = folder.Write("template.html", "<!DOCTYPE html>\n@TITLE@ @DOCUMENT@ @DRAWINGS@");
    const ToolRun run = RunQmv40({"view", "--geometry", files.geometry, "--from", "0,0", "--to", "0,0", "--template",
                                  page, "--svg", drawingName, "--output", files.capture});
    EXPECT_EQ(3, run.exitCode);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("drawing.svg")));
}

TEST(OutputFile, OfAGeometryKeepsOtherEntriesOfTheFile) {
    const TemporaryFolder folder;
    const std::string name = folder.Write("head.ini", "; of the left arm\n[Notes]\nOperator=7\n[HEADCENTRE]\nX=1\n");
    EXPECT_EQ(0, RunQmv40(LoadScenario("plain").GeometryArguments({"--output", name})).exitCode);
    std::string content = ReadFile(name);
    std::erase(content, '\r'); // line ends of Windows
    EXPECT_THAT(content, HasSubstr("; of the left arm\n[Notes]\nOperator=7\n"));
    EXPECT_THAT(content, HasSubstr("X=4.125000000e+02\n"));
}

} // namespace
