#include "host/system/workers.h"

#include "host/system/interrupts.h"
#include "platform/descriptors.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <system_error>
#include <vector>

namespace korlit::host {

namespace {

constexpr int tickMs = 100;

struct Worker {
    pid_t process = -1;
    int channel = -1;
    bool isBusy = false;
    bool isLost = false; ///< it can't be started
    std::size_t task = 0;
};

bool receive(int channel, void* target, std::size_t size) {
    auto* bytes = static_cast<char*>(target);
    const auto wanted = static_cast<std::int64_t>(size);
    return transferAll(wanted, [&](std::int64_t done) {
               return recv(channel, bytes + done, static_cast<std::size_t>(wanted - done), 0);
           }) == wanted;
}

bool transmit(int channel, const void* source, std::size_t size) {
    const auto* bytes = static_cast<const char*>(source);
    const auto wanted = static_cast<std::int64_t>(size);
    // A worker that is gone must not end this process by a signal.
    return transferAll(wanted, [&](std::int64_t done) {
               return send(channel, bytes + done, static_cast<std::size_t>(wanted - done),
                           MSG_NOSIGNAL);
           }) == wanted;
}

/// What a worker does until its channel closes.
[[noreturn]] void serve(int channel, const WorkerCalls& calls) {
    ignoreInterrupts();
    for (std::size_t task = 0; receive(channel, &task, sizeof task);) {
        const std::string answer = calls.run(task);
        const std::size_t size = answer.size();
        if (!transmit(channel, &size, sizeof size) || !transmit(channel, answer.data(), size)) {
            break;
        }
    }
    calls.end();
    _exit(0);
}

class Pool {
  public:
    Pool(std::size_t workerCount, const WorkerCalls& poolCalls)
        : calls{poolCalls}, workers(workerCount) {}
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;
    ~Pool() {
        for (Worker& worker : workers) {
            end(worker);
        }
    }

    void run(std::size_t taskCount) {
        std::size_t next = 0;
        while (true) {
            for (Worker& worker : workers) {
                if (!worker.isBusy && !worker.isLost && next < taskCount && calls.mayGoOn()) {
                    next += begin(worker, next) ? 1 : 0;
                }
            }
            if (std::ranges::none_of(workers, &Worker::isBusy)) {
                if (next < taskCount && calls.mayGoOn()) {
                    throw std::system_error{startError, "no worker can be started"};
                }
                return;
            }
            await();
            calls.tick();
        }
    }

  private:
    /// Answers whether there is a process; where there is none the others do its work.
    bool start(Worker& worker) {
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
            return false;
        }
        if (worker.process == 0) {
            close(ends[0]);
            // Another worker's channel must not stay open here when this process has closed it.
            for (const Worker& other : workers) {
                close(other.channel);
            }
            serve(ends[1], calls);
        }
        close(ends[1]);
        worker.channel = ends[0];
        return true;
    }

    /// Answers whether the worker has the task.
    bool begin(Worker& worker, std::size_t task) {
        if (worker.process < 0 && !start(worker)) {
            return false;
        }
        if (!transmit(worker.channel, &task, sizeof task)) {
            // It was killed between two tasks. If the new one is gone too, its silence tells.
            end(worker);
            if (!start(worker)) {
                return false;
            }
            transmit(worker.channel, &task, sizeof task);
        }
        worker.task = task;
        worker.isBusy = true;
        return true;
    }

    /// Waits a while for answers and takes those that are there.
    void await() {
        std::vector<Worker*> busy;
        std::vector<pollfd> channels;
        for (Worker& worker : workers) {
            // The system refuses to look at more channels than a process may have.
            if (worker.isBusy) {
                busy.push_back(&worker);
                channels.push_back({.fd = worker.channel, .events = POLLIN, .revents = 0});
            }
        }
        if (poll(channels.data(), channels.size(), tickMs) <= 0) {
            return;
        }
        for (std::size_t i = 0; i < busy.size(); ++i) {
            if (channels[i].revents != 0) {
                take(*busy[i]);
            }
        }
    }

    void take(Worker& worker) {
        TaskResult result{.task = worker.task, .isAnswered = false, .text = {}};
        std::size_t size = 0;
        if (receive(worker.channel, &size, sizeof size)) {
            result.text.resize(size);
            result.isAnswered = receive(worker.channel, result.text.data(), size);
        }
        worker.isBusy = false;
        if (!result.isAnswered) {
            result.text = end(worker);
        }
        calls.finished(result);
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
    std::vector<Worker> workers;
    std::error_code startError;
};

} // namespace

void runInWorkers(std::size_t workerCount, std::size_t taskCount, const WorkerCalls& calls) {
    Pool pool{std::clamp<std::size_t>(taskCount, 1, std::max<std::size_t>(workerCount, 1)), calls};
    pool.run(taskCount);
}

} // namespace korlit::host
