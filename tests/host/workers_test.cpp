// Workers as the processes that they are.
#include "host/system/workers.h"

#include "host/system/interrupts.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <map>
#include <new>
#include <string>

namespace korlit::host {
namespace {

/// How often something happened, in whichever process.
class SharedCount {
  public:
    SharedCount()
        : count{new (mmap(nullptr, sizeof *count, PROT_READ | PROT_WRITE,
                          MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>{0}} {}
    SharedCount(const SharedCount&) = delete;
    SharedCount& operator=(const SharedCount&) = delete;
    ~SharedCount() { munmap(count, sizeof *count); }

    void add() { ++*count; }
    int value() const { return *count; }

  private:
    std::atomic<int>* count;
};

/// Around what is received at a time.
std::string answerTo(std::size_t task) {
    constexpr std::size_t sizes[]{0, 1, 15, 65519, 65520, 65521, 65536, 200'000};
    return std::string(sizes[task % std::size(sizes)], static_cast<char>('a' + task % 26));
}

class WorkersTest : public testing::Test {
  protected:
    /// What came of the tasks; none may come twice.
    std::map<std::size_t, TaskResult> results;
    SharedCount begun;
    SharedCount ended;
    std::size_t mostFinished = SIZE_MAX; ///< behind so many none may begin
    std::function<void(std::size_t)> before = [](std::size_t /*task*/) {};

    void run(std::size_t workerCount, std::size_t taskCount) {
        results.clear();
        runInWorkers(workerCount, taskCount,
                     {.run =
                          [&](std::size_t task) {
                              begun.add();
                              before(task);
                              return answerTo(task);
                          },
                      .end = [&] { ended.add(); },
                      .finished =
                          [&](const TaskResult& result) {
                              EXPECT_TRUE(results.emplace(result.task, result).second);
                          },
                      .tick = [] {},
                      .mayGoOn = [&] { return results.size() < mostFinished; }});
    }
};

TEST_F(WorkersTest, AnswerEachTaskOnceAndWhole) {
    for (const std::size_t workerCount : {0U, 1U, 3U, 20U}) {
        for (const std::size_t taskCount : {0U, 1U, 5U, 40U}) {
            run(workerCount, taskCount);
            EXPECT_EQ(results.size(), taskCount);
            for (const auto& [task, result] : results) {
                EXPECT_TRUE(result.isAnswered && result.text == answerTo(task)) << task;
            }
        }
    }
}

TEST_F(WorkersTest, AWorkerThatDiesCostsItsTaskAlone) {
    const std::map<std::size_t, std::string> deaths{{0, "was killed by signal 9"},
                                                    {7, "exited with status 3"},
                                                    {8, "was killed by signal 10"},
                                                    {19, "was killed by signal 9"}};
    before = [](std::size_t task) {
        if (task == 7) {
            _exit(3);
        }
        if (task == 8) {
            std::raise(SIGUSR1);
        }
        std::raise(task == 0 || task == 19 ? SIGKILL : SIGTERM); // the latter doesn't reach it
    };
    for (const std::size_t workerCount : {1U, 2U, 6U}) {
        run(workerCount, 20);
        EXPECT_EQ(results.size(), 20U);
        for (const auto& [task, result] : results) {
            const auto death = deaths.find(task);
            EXPECT_EQ(result.isAnswered, death == deaths.end()) << task;
            EXPECT_EQ(result.text, death == deaths.end() ? answerTo(task) : death->second);
        }
    }
}

TEST_F(WorkersTest, WhatHasBegunComesToItsEnd) {
    mostFinished = 2;
    before = [](std::size_t /*task*/) { usleep(20'000); };
    run(3, 40);
    EXPECT_EQ(begun.value(), std::ssize(results));
    EXPECT_GE(results.size(), mostFinished);
    EXPECT_LT(results.size(), 30U);
    EXPECT_EQ(ended.value(), 3);
}

TEST(Interrupts, AreNotedButForAHangUpThatNobodyIsToHear) {
    for (const bool isHeard : {true, false}) {
        const pid_t child = fork();
        if (child == 0) {
            std::signal(SIGHUP, isHeard ? SIG_DFL : SIG_IGN);
            watchInterrupts();
            bool isRight = !isInterrupted();
            std::raise(SIGHUP);
            isRight = isRight && isInterrupted() == isHeard;
            std::raise(SIGTERM);
            _exit(isRight && isInterrupted() ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << isHeard;
    }
}

} // namespace
} // namespace korlit::host
