#include "host/system/workers.h"

#include "host/system/interrupts.h"
#include "platform/descriptors.h"

#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

namespace korlit::host {

namespace {

constexpr int tickMs = 100;
constexpr std::chrono::milliseconds restBetweenAnswers{1};

/// Which tasks are taken, in memory that all processes share: a worker takes the next one itself,
/// and none waits for this process between two tasks.
class Board {
  public:
    explicit Board(std::size_t taskCount)
        : count{taskCount}, size{sizeof(Shared) + taskCount * sizeof(Owner)} {
        void* memory =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::system_error{errno, std::generic_category(), "no memory for workers"};
        }
        // All zeros are nobody's tasks.
        shared = static_cast<Shared*>(memory);
        owners = {reinterpret_cast<Owner*>(shared + 1), count};
    }
    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;
    ~Board() { munmap(shared, size); }

    void stop() { shared->isStopped = true; }

    /// Whether there are tasks that a worker may take.
    bool hasMore() const { return firstFree() < count && !shared->isStopped; }

    /// Takes the next task for a worker, by its number.
    std::optional<std::size_t> take(std::size_t worker) {
        while (hasMore()) {
            const std::size_t task = firstFree();
            std::uint32_t nobody = 0;
            if (task < count && owners[task].compare_exchange_strong(
                                    nobody, static_cast<std::uint32_t>(worker + 1))) {
                shared->next = task + 1;
                return task;
            }
        }
        return std::nullopt;
    }

    bool isTakenBy(std::size_t task, std::size_t worker) const {
        return owners[task] == worker + 1;
    }

  private:
    using Owner = std::atomic<std::uint32_t>;

    struct Shared {
        std::atomic<std::size_t> next;
        std::atomic<bool> isStopped;
    };

    static_assert(Owner::is_always_lock_free && std::atomic<std::size_t>::is_always_lock_free);

    /// What `next` says may be behind by as many as there are workers, or by one that died.
    std::size_t firstFree() const {
        std::size_t task = shared->next;
        while (task < count && owners[task] != 0) {
            ++task;
        }
        return task;
    }

    std::size_t count;
    std::size_t size;
    Shared* shared = nullptr;
    std::span<Owner> owners;
};

/// Ahead of an answer's text.
struct AnswerHead {
    std::size_t task = 0;
    std::size_t size = 0;
};

struct Worker {
    pid_t process = -1;
    int channel = -1;
    bool isLost = false;    ///< it can't be started
    std::string received{}; ///< the begin of what hasn't come whole yet
};

bool transmit(int channel, std::string_view bytes) {
    // This process must not end by a signal when the other one is gone.
    return transferAll(std::ssize(bytes), [&](std::int64_t done) {
               const std::string_view left = bytes.substr(static_cast<std::size_t>(done));
               return send(channel, left.data(), left.size(), MSG_NOSIGNAL);
           }) == std::ssize(bytes);
}

/// What a worker does until no task is left, or nobody takes its answers.
[[noreturn]] void serve(std::size_t worker, int channel, Board& board, const WorkerCalls& calls) {
    ignoreInterrupts();
    while (const auto task = board.take(worker)) {
        const std::string text = calls.run(*task);
        const AnswerHead head{.task = *task, .size = text.size()};
        std::string answer{reinterpret_cast<const char*>(&head), sizeof head};
        if (!transmit(channel, answer += text)) {
            break;
        }
    }
    calls.end();
    _exit(0);
}

class Pool {
  public:
    Pool(std::size_t workerCount, std::size_t poolTaskCount, const WorkerCalls& poolCalls)
        : calls{poolCalls}, taskCount{poolTaskCount}, board{poolTaskCount}, workers(workerCount),
          isReported(poolTaskCount) {}
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;
    ~Pool() {
        board.stop();
        for (Worker& worker : workers) {
            end(worker);
        }
    }

    void run() {
        while (true) {
            if (!calls.mayGoOn()) {
                board.stop();
            }
            for (std::size_t i = 0; i < workers.size() && board.hasMore(); ++i) {
                start(i);
            }
            if (std::ranges::all_of(workers, [](const Worker& each) { return each.process < 0; })) {
                break;
            }
            await();
            calls.tick();
        }
        if (board.hasMore()) {
            throw std::system_error{startError, "no worker can be started"};
        }
    }

  private:
    /// Makes a process for a worker that has none; where that can't be the others do its work.
    void start(std::size_t number) {
        Worker& worker = workers[number];
        if (worker.process >= 0 || worker.isLost) {
            return;
        }
        std::array<int, 2> ends{};
        const bool hasChannel =
            socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0;
        worker.process = hasChannel ? fork() : -1;
        if (worker.process < 0) {
            startError = std::error_code{errno, std::generic_category()};
            worker = {.isLost = true};
            for (const int end : ends) {
                if (hasChannel) {
                    close(end);
                }
            }
            return;
        }
        if (worker.process == 0) {
            close(ends[0]);
            // Another worker's channel must not stay open here when this process has closed it.
            for (const Worker& other : workers) {
                close(other.channel);
            }
            serve(number, ends[1], board, calls);
        }
        close(ends[1]);
        worker.channel = ends[0];
    }

    /// Waits a while for answers and takes those that are there.
    void await() {
        std::vector<std::size_t> running;
        std::vector<pollfd> channels;
        for (std::size_t i = 0; i < workers.size(); ++i) {
            // The system refuses to look at more channels than a process may have.
            if (workers[i].process >= 0) {
                running.push_back(i);
                channels.push_back({.fd = workers[i].channel, .events = POLLIN, .revents = 0});
            }
        }
        if (poll(channels.data(), channels.size(), tickMs) <= 0) {
            return;
        }
        for (std::size_t i = 0; i < running.size(); ++i) {
            if (channels[i].revents != 0) {
                take(running[i]);
            }
        }
        if (board.hasMore()) {
            // To be woken for every answer would cost a worker more than many a conversion does.
            std::this_thread::sleep_for(restBetweenAnswers);
        }
    }

    void take(std::size_t number) {
        Worker& worker = workers[number];
        const std::int64_t moved = recv(worker.channel, room.data(), room.size(), MSG_DONTWAIT);
        const bool isLater = moved < 0 && (errno == EINTR || errno == EAGAIN);
        worker.received.append(room.data(),
                               static_cast<std::size_t>(std::max<std::int64_t>(moved, 0)));
        report(worker.received);
        if (moved <= 0 && !isLater) {
            reportLost(number, end(worker));
        }
    }

    /// Tells the answers that have come whole, and leaves the rest.
    void report(std::string& received) {
        AnswerHead head;
        std::size_t done = 0;
        while (received.size() - done >= sizeof head) {
            std::memcpy(&head, &received[done], sizeof head);
            if (received.size() - done - sizeof head < head.size) {
                break;
            }
            report({.task = head.task,
                    .isAnswered = true,
                    .text = received.substr(done + sizeof head, head.size)});
            done += sizeof head + head.size;
        }
        received.erase(0, done);
    }

    void report(const TaskResult& result) {
        isReported[result.task] = true;
        calls.finished(result);
    }

    /// What a worker has taken and not answered ended with it.
    void reportLost(std::size_t worker, const std::string& howItEnded) {
        for (std::size_t task = 0; task < taskCount; ++task) {
            if (!isReported[task] && board.isTakenBy(task, worker)) {
                report({.task = task, .isAnswered = false, .text = howItEnded});
            }
        }
    }

    /// Lets a worker go; answers how it ended.
    static std::string end(Worker& worker) {
        if (worker.process < 0) {
            return {};
        }
        close(worker.channel);
        int status = 0;
        while (waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {
        }
        worker = {};
        return WIFSIGNALED(status) ? "was killed by signal " + std::to_string(WTERMSIG(status))
                                   : "exited with status " + std::to_string(WEXITSTATUS(status));
    }

    const WorkerCalls& calls;
    std::size_t taskCount;
    Board board;
    std::vector<Worker> workers;
    std::vector<bool> isReported;
    std::vector<char> room = std::vector<char>(64 * 1024UL); ///< for what comes from a channel
    std::error_code startError;
};

} // namespace

void runInWorkers(std::size_t workerCount, std::size_t taskCount, const WorkerCalls& calls) {
    Pool pool{std::clamp<std::size_t>(taskCount, 1, std::max<std::size_t>(workerCount, 1)),
              taskCount, calls};
    pool.run();
}

} // namespace korlit::host
