// Worker processes: tasks by number run apart from the process that hands them out, so that a crash
// costs one task.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace korlit::host {

struct TaskResult {
    std::size_t task = 0;
    bool isAnswered = false;
    std::string text; ///< the answer; else how the worker ended, as in "was killed by signal 9"
};

struct WorkerCalls {
    /// Does a task, in a worker, and answers with a text.
    std::function<std::string(std::size_t task)> run;
    /// Called in a worker at its end, unless it is killed.
    std::function<void()> end;
    /// Takes what came of a task, in the order in which they end.
    std::function<void(const TaskResult&)> finished;
    /// Called every now and then, at least some times a second.
    std::function<void()> tick;
    /// Whether a further task may begin. Those that run come to their end in any case.
    std::function<bool()> mayGoOn;
};

/// Runs the tasks 0 to `taskCount` - 1 in at most `workerCount` processes at a time. A worker that
/// ends in the middle of a task is replaced by a new one for the next; where one can't be started
/// the others go on. Interrupts don't reach the workers. Throws a system_error where tasks are left
/// and no worker is.
void runInWorkers(std::size_t workerCount, std::size_t taskCount, const WorkerCalls& calls);

} // namespace korlit::host
