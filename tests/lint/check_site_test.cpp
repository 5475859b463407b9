// SPDX-License-Identifier: Apache-2.0
// tools/check_site on small sites: a link within one leads somewhere, and no mark of Markdown is
// left.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

class CheckSite : public testing::Test {
protected:
    CheckSite()
    {
        std::string pattern = (fs::temp_directory_path() / "zrschema-site-XXXXXX").string();
        root_ = mkdtemp(pattern.data());
    }
    ~CheckSite() override { fs::remove_all(root_); }

    void Write(const char *name, const std::string &text) const
    {
        std::ofstream(root_ / name, std::ios::binary) << text;
    }

    // The exit status and what was printed.
    std::pair<int, std::string> Run() const
    {
        const std::string to = root_.string() + ".out";
        const int status = std::system((ZR_PYTHON " " ZR_SOURCE_DIR "/tools/check_site '" +
                                        root_.string() + "' >'" + to + "' 2>&1")
                                           .c_str());
        std::stringstream text;
        text << std::ifstream(to).rdbuf();
        fs::remove(to);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text.str()};
    }

    fs::path root_;
};

TEST_F(CheckSite, PassesLinksToPagesAnchorsAndOtherSites)
{
    Write("index.html", "<a href='other.html#here'>x</a> <a href='#top'>y</a> <p id='top'>"
                        "<a href='https://www.example.com/a'>z</a> <img src='a.svg'>");
    Write("other.html", "<a name='here'></a><code>a](b) `c`</code><div class='line'>`d`</div>");
    Write("a.svg", "<svg/>");
    Write("tree.js", "var tree = [ \"Page\", \"other.html#here\", null ];");
    EXPECT_EQ(Run(), std::make_pair(0, std::string()));
}

TEST_F(CheckSite, FindsLinksThatLeadNowhere)
{
    Write("index.html", "<a href='gone.html'>x</a> <a href='#gone'>y</a> <img src='gone.svg'>");
    Write("tree.js", "var tree = [ \"Page\", \"index.html#away\", null ];");
    EXPECT_EQ(Run(), std::make_pair(1, std::string("index.html: #gone leads nowhere\n"
                                                   "index.html: gone.html leads nowhere\n"
                                                   "index.html: gone.svg leads nowhere\n"
                                                   "tree.js: index.html#away leads nowhere\n")));
}

TEST_F(CheckSite, FindsMarksThatWereNotReadAsMarkdown)
{
    Write("index.html", "<p>See [x](y.md).</p><div><div class='line'>`a`</div> and `b</div>");
    EXPECT_EQ(Run(),
              std::make_pair(1, std::string("index.html: not read as Markdown: See [x](y.md).\n"
                                            "index.html: not read as Markdown: and `b\n")));
}

TEST_F(CheckSite, EndsWithStatusTwoWhereThereIsNoSite)
{
    EXPECT_EQ(Run(), std::make_pair(2, std::string("check_site: there is no site\n")));
}

} // namespace
