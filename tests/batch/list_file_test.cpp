#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "batch/list_file.h"
#include "batch/session.h"
#include "fakes/temp_folder.h"

namespace sheafwork {
namespace {

using testing::TempFolder;

constexpr const char* kMagic = "Orvane 2000 Sheafwork List File\r\n";

// A host window that records what it was given and can refuse.
struct FakeWindow : HostWindow {
  std::int32_t width = 800, height = 600;
  bool refuse = false;
  std::int32_t Width() override { return width; }
  std::int32_t Height() override { return height; }
  void SetWidth(std::int32_t w) override {
    if (refuse) throw std::runtime_error("refused");
    width = w;
  }
  void SetHeight(std::int32_t h) override {
    if (refuse) throw std::runtime_error("refused");
    height = h;
  }
};

class ListFileTest : public ::testing::Test {
 protected:
  // A session as a user would have built it: every field set, accents included.
  static void Fill(Session& s) {
    s.Log.JournalHeader = "Lot nord — été";
    s.Log.JournalUserComment = "c";
    s.Log.JournalAppend = true;
    s.Log.ErrorLogOn = false;
    BatchEntry& e = s.List.Append();
    e = {"/plans/é.dwg", "Présentation1", "A3|Mise",   "PDF.pc3", "A 1 0 0", "3", "1:100",
         true,           false,           "/out/x.pdf"};
    s.List.Append().FileName = "/plans/b.dwg";
  }

  Session Read(const std::string& bytes, bool* ok = nullptr) {
    Session s("/logs");
    const auto result = ReadListFile(s, folder.Write("in.qx3", bytes), false);
    if (ok) *ok = result.ok();
    return s;
  }

  TempFolder folder;
};

TEST_F(ListFileTest, WritesTheExactBytes) {
  Session s("/logs");
  Fill(s);
  const std::string path = folder.File("list.qx3");
  ASSERT_TRUE(WriteListFile(s, path).ok());
  const std::string expected = std::string(kMagic) + "\"BATCH FILE NAME\",\"" + path +
                               "\"\r\n"
                               "\"BATCH JOURNAL LOG ON?\",#TRUE#\r\n"
                               "\"BATCH JOURNAL LOG FILENAME\",\"/logs/QXJOURNL.LOG\"\r\n"
                               "\"BATCH JOURNAL HEADER\",\"Lot nord \x97 \xE9t\xE9\"\r\n"
                               "\"BATCH JOURNAL USER COMMENT\",\"c\"\r\n"
                               "\"BATCH JOURNAL APPEND?\",#TRUE#\r\n"
                               "\"BATCH ERROR LOG ON?\",#FALSE#\r\n"
                               "\"BATCH ERROR LOG FILENAME\",\"/logs/QXERROR.LOG\"\r\n"
                               "\"BATCH ERROR HEADER\",\"\"\r\n"
                               "\"BATCH ERROR APPEND?\",#FALSE#\r\n"
                               "\"BATCH NUM FILES\",2\r\n"
                               "\"BATCH WIN SIZE\",\"1024,768\"\r\n"
                               "\"DWG#1FILENAME\",\"/plans/\xE9.dwg\"\r\n"
                               "\"DWG#1LAYOUT\",\"Pr\xE9sentation1\"\r\n"
                               "\"DWG#1PLOTSETUP\",\"A3|Mise\"\r\n"
                               "\"DWG#1PLOTDEVICE\",\"PDF.pc3\"\r\n"
                               "\"DWG#1LAYERS\",\"A 1 0 0\"\r\n"
                               "\"DWG#1PLOTAREA\",\"3\"\r\n"
                               "\"DWG#1PLOTSCALE\",\"1:100\"\r\n"
                               "\"DWG#1SCALECUSTOM\",#TRUE#\r\n"
                               "\"DWG#1SCALELW\",#FALSE#\r\n"
                               "\"DWG#1PLOTFILE\",\"/out/x.pdf\"\r\n"
                               "\"DWG#2FILENAME\",\"/plans/b.dwg\"\r\n"
                               "\"DWG#2LAYOUT\",\"\"\r\n"
                               "\"DWG#2PLOTSETUP\",\"\"\r\n"
                               "\"DWG#2PLOTDEVICE\",\"\"\r\n"
                               "\"DWG#2LAYERS\",\"\"\r\n"
                               "\"DWG#2PLOTAREA\",\"\"\r\n"
                               "\"DWG#2PLOTSCALE\",\"\"\r\n"
                               "\"DWG#2SCALECUSTOM\",#FALSE#\r\n"
                               "\"DWG#2SCALELW\",#FALSE#\r\n"
                               "\"DWG#2PLOTFILE\",\"\"\r\n";
  EXPECT_EQ(TempFolder::Read(path), expected);
  EXPECT_EQ(s.ListName, path);
  EXPECT_FALSE(s.ListModified);
  EXPECT_EQ(s.Caption, Session::CaptionFor(path));
}

TEST_F(ListFileTest, ReadsBackWhatItWrote) {
  Session s("/logs");
  Fill(s);
  s.WinSize = "1280,1024";
  const std::string path = folder.File("list.qx3");
  ASSERT_TRUE(WriteListFile(s, path).ok());
  Session back("/elsewhere");
  ASSERT_TRUE(ReadListFile(back, path, false).ok());
  EXPECT_EQ(back.List, s.List);
  EXPECT_EQ(back.Log, s.Log);
  EXPECT_EQ(back.ListName, path);
  EXPECT_EQ(back.WinSize, "1280,1024");
}

TEST_F(ListFileTest, ReadsTolerantly) {
  bool ok = false;
  // Old magic in any case, LF or CR line ends, keys in any case and order,
  // unknown keys, blank lines, entry lines before the count.
  const Session s = Read(
      "orvane r15 sheafwork list file\n"
      "\"dwg#12layout\",\"L12\"\r"
      "\"SOMETHING NEW\",\"ignored\"\r\n"
      "\r\n"
      "\"batch error log on?\",#FALSE#\r\n"
      "\"DWG#2FileName\",\"/p/b.dwg\"\n"
      "\"DWG#2SCALELW\",#TRUE#\n"
      "\"DWG#0LAYOUT\",\"no entry zero\"\n"
      "\"DWG#LAYOUT\",\"no number\"\n",
      &ok);
  ASSERT_TRUE(ok);
  EXPECT_EQ(s.List.EntryCount(), 12);
  EXPECT_EQ(s.List.Entry(12).Layout, "L12");
  EXPECT_EQ(s.List.Entry(2).FileName, "/p/b.dwg");
  EXPECT_TRUE(s.List.Entry(2).ScaleLW);
  EXPECT_EQ(s.List.Entry(1), BatchEntry{});
  EXPECT_FALSE(s.Log.ErrorLogOn);
  EXPECT_TRUE(s.Log.JournalLogOn);  // reset to the default before reading
  EXPECT_EQ(s.Log.JournalLogFileName, "/logs/QXJOURNL.LOG");
}

TEST_F(ListFileTest, ReadsWindows1252AndUtf8Text) {
  const Session latin = Read(std::string(kMagic) + "\"DWG#1LAYOUT\",\"Pr\xE9sentation \x80\"\r\n");
  EXPECT_EQ(latin.List.Entry(1).Layout, "Présentation €");
  const Session utf8 =
      Read("\xEF\xBB\xBF" + std::string(kMagic) + "\"DWG#1LAYOUT\",\"Présentation €\"\r\n");
  EXPECT_EQ(utf8.List.Entry(1).Layout, "Présentation €");
}

TEST_F(ListFileTest, AppendingAddsBehindTheCurrentEntriesAndKeepsTheSettings) {
  Session s("/logs");
  for (const char* name : {"/a/1.dwg", "/a/2.dwg", "/a/3.dwg"}) s.List.Append().FileName = name;
  s.ListName = "/lists/current.qx3";
  s.Log.JournalHeader = "mine";
  const std::string other =
      folder.Write("other.qx3", std::string(kMagic) +
                                    "\"BATCH FILE NAME\",\"/lists/other.qx3\"\r\n"
                                    "\"BATCH JOURNAL HEADER\",\"theirs\"\r\n"
                                    "\"BATCH NUM FILES\",2\r\n"
                                    "\"BATCH WIN SIZE\",\"640,480\"\r\n"
                                    "\"DWG#1FILENAME\",\"/b/1.dwg\"\r\n"
                                    "\"DWG#2FILENAME\",\"/b/2.dwg\"\r\n"
                                    "\"DWG#2LAYOUT\",\"Objet\"\r\n");
  ASSERT_TRUE(ReadListFile(s, other, true).ok());
  ASSERT_EQ(s.List.EntryCount(), 5);
  EXPECT_EQ(s.List.Entry(3).FileName, "/a/3.dwg");
  EXPECT_EQ(s.List.Entry(4).FileName, "/b/1.dwg");
  EXPECT_EQ(s.List.Entry(5).FileName, "/b/2.dwg");
  EXPECT_EQ(s.List.Entry(5).Layout, "Objet");
  EXPECT_EQ(s.ListName, "/lists/current.qx3");
  EXPECT_EQ(s.Log.JournalHeader, "mine");
  EXPECT_EQ(s.WinSize, "640,480");  // the window size applies in both modes
}

TEST_F(ListFileTest, AppendingAFileWhoseEntriesComeBeforeItsCount) {
  Session s("/logs");
  s.List.Append().FileName = "/a/1.dwg";
  const std::string other = folder.Write("other.qx3", std::string(kMagic) +
                                                          "\"DWG#1FILENAME\",\"/b/1.dwg\"\r\n"
                                                          "\"BATCH NUM FILES\",1\r\n");
  ASSERT_TRUE(ReadListFile(s, other, true).ok());
  ASSERT_EQ(s.List.EntryCount(), 2);
  EXPECT_EQ(s.List.Entry(1).FileName, "/a/1.dwg");
  EXPECT_EQ(s.List.Entry(2).FileName, "/b/1.dwg");
}

TEST_F(ListFileTest, AWrongFirstLineChangesNothing) {
  Session s("/logs");
  s.List.Append().FileName = "/a/1.dwg";
  s.Log.JournalHeader = "kept";
  for (const char* bytes :
       {"Orvane 2000 Sheafwork List File \r\n", "\"BATCH NUM FILES\",1\r\n", ""}) {
    const auto result = ReadListFile(s, folder.Write("bad.qx3", bytes), false);
    EXPECT_EQ(result.status, ListFileStatus::WrongFirstLine);
    EXPECT_EQ(MessageIdFor(result.status), 91);
  }
  EXPECT_EQ(s.List.EntryCount(), 1);
  EXPECT_EQ(s.Log.JournalHeader, "kept");
}

TEST_F(ListFileTest, AMalformedLineStopsReadingAndKeepsWhatCameBefore) {
  struct Case {
    const char* body;
    int line;
  };
  const Case cases[] = {
      {"\"DWG#1FILENAME\",\"/a.dwg\"\r\n\"NO VALUE\"\r\n\"DWG#2FILENAME\",\"/b.dwg\"\r\n", 3},
      {"\"DWG#1FILENAME\",\"/a.dwg\"\r\n\"BATCH JOURNAL LOG ON?\",\"perhaps\"\r\n", 3},
      {"\"DWG#1FILENAME\",\"/a.dwg\"\r\n\"DWG#1SCALELW\",\"x\"\r\n", 3},
      {"\"DWG#1FILENAME\",\"/a.dwg\"\r\n\"BATCH NUM FILES\",-1\r\n", 3},
      {"\"DWG#1FILENAME\",\"/a.dwg\"\r\n\"DWG#40000LAYOUT\",\"x\"\r\n", 3},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.body);
    Session s("/logs");
    const auto result = ReadListFile(s, folder.Write("m.qx3", std::string(kMagic) + c.body), false);
    EXPECT_EQ(result.status, ListFileStatus::Malformed);
    EXPECT_EQ(result.line, c.line);
    EXPECT_EQ(MessageIdFor(result.status), 92);
    ASSERT_EQ(s.List.EntryCount(), 1);
    EXPECT_EQ(s.List.Entry(1).FileName, "/a.dwg");
  }
}

TEST_F(ListFileTest, AMissingFileCannotBeOpened) {
  Session s("/logs");
  const auto result = ReadListFile(s, folder.File("missing.qx3"), false);
  EXPECT_EQ(result.status, ListFileStatus::CannotOpen);
  EXPECT_FALSE(result.reason.empty());
}

TEST_F(ListFileTest, QuotedValuesKeepCommasButNotQuotes) {
  Session s("/logs");
  BatchEntry& e = s.List.Append();
  e.FileName = "/p/a.dwg";
  e.Layout = "A,B";
  e.PlotSetup = R"(say "hi")";
  const std::string path = folder.File("q.qx3");
  ASSERT_TRUE(WriteListFile(s, path).ok());
  Session back("/logs");
  ASSERT_TRUE(ReadListFile(back, path, false).ok());
  EXPECT_EQ(back.List.Entry(1).Layout, "A,B");
  EXPECT_EQ(back.List.Entry(1).PlotSetup, "say ");
}

TEST_F(ListFileTest, TheWindowSizeGoesToAndComesFromTheHost) {
  FakeWindow window;
  Session s("/logs");
  s.Host = &window;
  const std::string list = std::string(kMagic) + "\"BATCH WIN SIZE\",\"1280,1024\"\r\n";
  ASSERT_TRUE(ReadListFile(s, folder.Write("w.qx3", list), false).ok());
  EXPECT_EQ(window.width, 1280);
  EXPECT_EQ(window.height, 1024);

  // No comma, or a size the host refuses: ignored, reading goes on.
  window.refuse = true;
  const std::string refused = std::string(kMagic) + "\"BATCH WIN SIZE\",\"1,2\"\r\n" +
                              "\"BATCH WIN SIZE\",\"1280\"\r\n\"DWG#1FILENAME\",\"/a.dwg\"\r\n";
  ASSERT_TRUE(ReadListFile(s, folder.Write("w.qx3", refused), false).ok());
  EXPECT_EQ(window.width, 1280);
  EXPECT_EQ(s.List.EntryCount(), 1);

  window.width = 1600;
  window.height = 900;
  const std::string path = folder.File("out.qx3");
  ASSERT_TRUE(WriteListFile(s, path).ok());
  EXPECT_NE(TempFolder::Read(path).find("\"BATCH WIN SIZE\",\"1600,900\"\r\n"), std::string::npos);
}

TEST_F(ListFileTest, AFailedWriteLeavesThePreviousFileAlone) {
  const std::string path = folder.Write("keep.qx3", "previous content");
  FakeWindow window;
  window.width = 70000;  // does not fit the file's 16-bit width
  Session s("/logs");
  s.Host = &window;
  s.List.Append().FileName = "/a/1.dwg";
  s.ListModified = true;
  const auto result = WriteListFile(s, path);
  EXPECT_EQ(result.status, ListFileStatus::CannotWrite);
  EXPECT_EQ(MessageIdFor(result.status), 98);
  EXPECT_EQ(TempFolder::Read(path), "previous content");
  EXPECT_TRUE(s.ListModified);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);

  s.Host = nullptr;
  EXPECT_EQ(WriteListFile(s, folder.File("no/such/folder/x.qx3")).status,
            ListFileStatus::CannotWrite);
}

TEST_F(ListFileTest, AnEmptyListIsNeverWritten) {
  Session s("/logs");
  const std::string path = folder.File("empty.qx3");
  EXPECT_EQ(WriteListFile(s, path).status, ListFileStatus::EmptyList);
  EXPECT_EQ(MessageIdFor(ListFileStatus::EmptyList), 89);
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace sheafwork
