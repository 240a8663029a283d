// Rewrites every file given into a folder, one document for each task, and goes on after a bad one.

#include "program.h"

#include <host/log.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <set>
#include <thread>

namespace {

using Libraries::Files::PDF::Document;

// page begin
struct Task {
    std::string name, from, to;
};

thread_local const Task* current = nullptr; // what this thread is at

/// Puts the file's name in front of each message of the log. Threads share the printer.
class NamingPrinter final : public Host::LogPrinter {
public:
    void print(std::uint32_t, Host::LogLevel, std::string_view message) noexcept override {
        const char* name = current != nullptr ? current->name.c_str() : "batch";
        std::fprintf(stderr, "%s: %.*s", name, static_cast<int>(message.size()), message.data());
    }
};

/// How all files are opened and saved.
struct Ways {
    Program::Opening opening;
    Program::Saving saving;
};

/// Rewrites one file; whatever it takes is made here and belongs to this thread alone. The target
/// is put in place when all of it was written, opens again and is sound. Gives "ok", or the error.
std::string rewrite(const Task& task, const Ways& ways) {
    const auto store = [&](const Host::Ref<Document>& document) {
        return Program::store(document, task.to, ways.saving, task.name + ": ");
    };
    const auto saved = Program::load(task.from, ways.opening).and_then(store);
    return saved ? "ok" : Program::failureLine({}, saved.error());
}

/// What came of the tasks so far. Threads share it, hence the lock.
class Report {
public:
    explicit Report(std::size_t total) : total_(total) {}

    void add(const Task& task, const std::string& result) {
        const std::lock_guard guard(mutex_);
        std::printf("[%zu/%zu] %s: %s\n", ++done_, total_, task.name.c_str(), result.c_str());
        std::fflush(stdout);
        if (result != "ok") ++failed_;
    }

    /// When the threads are done.
    [[nodiscard]] std::size_t failed() const { return failed_; }

private:
    std::mutex mutex_;
    std::size_t total_, done_ = 0, failed_ = 0;
};

/// Does all tasks on `threads` threads, this one included.
void rewriteAll(const std::vector<Task>& tasks, const Ways& ways, std::size_t threads,
                Report& report) {
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t index = next++; index < tasks.size(); index = next++) {
            current = &tasks[index];
            report.add(*current, rewrite(*current, ways));
        }
        current = nullptr;
    };

    std::vector<std::thread> others(threads - 1);
    try {
        for (std::thread& other : others)
            other = std::thread(work);
    } catch (const std::system_error&) { // no more threads to be had: those there do it all
    }
    work();
    for (std::thread& other : others) {
        if (other.joinable()) other.join();
    }
}
// page end

/// The tasks for the files behind the folder. Nothing where two would become one: `twice` is it.
std::vector<Task> tasksOf(const Program::Arguments& arguments, std::string& twice) {
    std::vector<Task> tasks;
    std::set<std::string> names;
    const std::filesystem::path folder = arguments[0];
    for (std::size_t index = 1; index < arguments.size(); ++index) {
        const std::string_view file = arguments[index];
        const std::string name = std::filesystem::path(file).filename().string();
        if (!names.insert(name).second) {
            twice = name;
            return {};
        }
        tasks.push_back({name, std::string(file), (folder / name).string()});
    }
    return tasks;
}

/// Does all of it; gives the exit status.
int run(const std::vector<Task>& tasks, const Ways& ways, std::size_t threads) {
    NamingPrinter printer;
    Host::LogPrinter& former = Host::SysLogStream::printer(printer);
    Report report(tasks.size());
    rewriteAll(tasks, ways, std::min(threads, tasks.size()), report);
    Host::SysLogStream::printer(former);
    const std::size_t failed = report.failed();
    std::printf("%zu files: %zu ok, %zu failed\n", tasks.size(), tasks.size() - failed, failed);
    const int status = Program::finishOutput();
    return failed == 0 ? status : Program::failed;
}

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"batch FOLDER FILE...", "Rewrites each FILE into FOLDER, under its own name.",
         Program::writingOptions({{"-j", "N", "on so many threads, 1 to 256"}})});
    if (!arguments.are(2, SIZE_MAX)) return arguments.refuse();
    const auto threads = Program::number<std::size_t>(arguments.value("-j").value_or("1"));
    if (!threads || *threads == 0 || *threads > 256)
        return arguments.refuse("-j takes a number from 1 to 256");
    std::string twice;
    const std::vector<Task> tasks = tasksOf(arguments, twice);
    if (tasks.empty()) return arguments.refuse("two files are named " + twice);
    const Ways ways = {Program::opening(arguments), Program::saving(arguments)};
    if (!ways.opening.possible) return Program::failed;

    std::error_code error;
    std::filesystem::create_directories(arguments[0], error);
    if (error)
        return Program::failure(arguments[0], Host::FileNotOpened, "the folder cannot be made");
    return run(tasks, ways, *threads);
}
