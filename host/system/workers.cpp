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
                if (!worker.isBusy && next < taskCount && calls.mayGoOn()) {
                    begin(worker, next++);
                }
            }
            if (std::ranges::none_of(workers, &Worker::isBusy)) {
                return;
            }
            await();
            calls.tick();
        }
    }

  private:
    void start(Worker& worker) {
        std::array<int, 2> ends{};
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
            throw std::system_error{errno, std::generic_category(), "no worker can be started"};
        }
        worker.process = fork();
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
        if (worker.process < 0) {
            throw std::system_error{errno, std::generic_category(), "no worker can be started"};
        }
    }

    void begin(Worker& worker, std::size_t task) {
        if (worker.process < 0) {
            start(worker);
        }
        if (!transmit(worker.channel, &task, sizeof task)) {
            // It was killed between two tasks. If the new one is gone too, its silence tells.
            end(worker);
            start(worker);
            transmit(worker.channel, &task, sizeof task);
        }
        worker.task = task;
        worker.isBusy = true;
    }

    /// Waits a while for answers and takes those that are there.
    void await() {
        std::vector<pollfd> channels;
        for (const Worker& worker : workers) {
            channels.push_back(
                {.fd = worker.isBusy ? worker.channel : -1, .events = POLLIN, .revents = 0});
        }
        if (poll(channels.data(), channels.size(), tickMs) <= 0) {
            return;
        }
        for (std::size_t i = 0; i < workers.size(); ++i) {
            if (channels[i].revents != 0) {
                take(workers[i]);
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
};

} // namespace

void runInWorkers(std::size_t workerCount, std::size_t taskCount, const WorkerCalls& calls) {
    Pool pool{std::clamp<std::size_t>(taskCount, 1, std::max<std::size_t>(workerCount, 1)), calls};
    pool.run(taskCount);
}

} // namespace korlit::host
