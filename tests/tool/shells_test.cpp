// SPDX-License-Identifier: Apache-2.0
// Completion in the shells themselves, at a terminal where they need one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "support.h"

using testing::HasSubstr;

namespace {

constexpr int kPatienceMs = 60000;

bool IsThere(const std::string &shell)
{
    return std::system(("command -v " + shell + " >/dev/null").c_str()) == 0;
}

std::string ReadFile(const std::string &path)
{
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// A folder with the program under its own name, modules, and what a shell reads when it starts.
class Place : public Folder {
public:
    Place()
    {
        std::string program = Add("zrschema", "#!/bin/sh\nexec " ZR_TOOL " \"$@\"\n");
        chmod(program.c_str(), 0755);
        AddModule(
            "modules/m.yin", "m",
            "<container name='top'><leaf name='one'><type name='string'/></leaf></container>");
    }

    std::string Environment() const
    {
        return "cd " + path() + " && export PATH=" + path() + ":$PATH HOME=" + path() +
               " ZDOTDIR=" + path() + " XDG_CONFIG_HOME=" + path() + " TERM=vt100 && ";
    }
};

// Reads from a terminal until its text holds `end`, or the other side is gone.
bool ReadUntil(int terminal, const std::string &end, std::string &text)
{
    char buffer[4096];
    pollfd waiting = {terminal, POLLIN, 0};
    while (end.empty() || text.find(end) == std::string::npos) {
        if (poll(&waiting, 1, kPatienceMs) <= 0)
            return false;
        ssize_t length = read(terminal, buffer, sizeof(buffer));
        if (length <= 0)
            return end.empty();
        text.append(buffer, static_cast<size_t>(length));
    }
    return true;
}

// What becomes of a command line that is typed in a shell, with the Tab key behind it. The shell's
// prompt is "READY", and at Control-X it writes the line into the file "line" and ends.
std::string Complete(const Place &place, const std::string &shell, const std::string &typed)
{
    std::string command = place.Environment() + "exec " + shell, text;
    int terminal = -1;
    pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    std::string keys = typed + "\t\x18";
    bool isDone = ReadUntil(terminal, "READY", text) &&
                  write(terminal, keys.data(), keys.size()) == ssize_t(keys.size()) &&
                  ReadUntil(terminal, "", text);
    EXPECT_TRUE(isDone) << text;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(terminal);
    return ReadFile(place.path() + "/line");
}

struct Line {
    const char *typed;
    const char *completed;
};
constexpr Line kLines[] = {
    {"zrschema tr", "zrschema tree "},
    {"zrschema tree --all", "zrschema tree --all-features "},
    {"zrschema convert --to j", "zrschema convert --to json "},
    {"zrschema convert --to=j", "zrschema convert --to=json "},
    {"zrschema tree -p mod", "zrschema tree -p modules/"},
    {"zrschema tree -p modules ", "zrschema tree -p modules m "},
    {"zrschema node -p 'modules' -m m /", "zrschema node -p 'modules' -m m /m:"},
    {"zrschema node -p modules /m:", "zrschema node -p modules /m:top/"},
    {"zrschema node -p modules /m:top/o", "zrschema node -p modules /m:top/one "},
};

void ExpectLines(const Place &place, const std::string &shell)
{
    for (const Line &line : kLines)
        EXPECT_EQ(Complete(place, shell, line.typed), line.completed) << shell;
}

} // namespace

TEST(Shells, BashCompletesWhatTheProgramSays)
{
    if (!IsThere("bash"))
        GTEST_SKIP() << "there is no bash here";
    Place place;
    place.Add("rc", "source " ZR_COMPLETIONS "/zrschema.bash\nPS1=READY\n"
                    "keep() { printf %s \"$READLINE_LINE\" >line; exit; }\n"
                    "bind 'set bell-style none'\nbind -x '\"\\C-x\": keep'\n");
    ExpectLines(place, "bash --noprofile --rcfile rc -i");
}

TEST(Shells, ZshCompletesWhatTheProgramSays)
{
    if (!IsThere("zsh"))
        GTEST_SKIP() << "there is no zsh here";
    Place place;
    place.Add(".zshrc",
              "fpath=(" ZR_COMPLETIONS " $fpath)\nautoload -U compinit\ncompinit -u -d functions\n"
              "keep() { print -rn -- \"$BUFFER\" >line; exit }\nzle -N keep\n"
              "bindkey -e\nbindkey '^X' keep\nPS1=READY\n");
    ExpectLines(place, "zsh -o no_global_rcs -i");
}

TEST(Shells, FishCompletesWhatTheProgramSays)
{
    if (!IsThere("fish"))
        GTEST_SKIP() << "there is no fish here";
    Place place;
    for (const Line &line : kLines) {
        std::string typed = line.typed, completed = line.completed;
        while (completed.back() == ' ')
            completed.pop_back();
        place.Add("ask.fish",
                  "source " ZR_COMPLETIONS "/zrschema.fish\ncomplete -C \"" + typed + "\"\n");
        std::string command = place.Environment() + "fish --no-config ask.fish >answer";
        EXPECT_EQ(std::system(command.c_str()), 0) << typed;
        std::string answer = "\n" + ReadFile(place.path() + "/answer");
        EXPECT_THAT(answer, HasSubstr("\n" + completed.substr(completed.rfind(' ') + 1))) << typed;
    }
}
