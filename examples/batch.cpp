// Rewrites every file given into a folder, one document for each task, and goes on after a bad one.

#include "program.h"

#include <host/log.h>

#include <atomic>
#include <filesystem>
#include <mutex>
#include <set>
#include <thread>

namespace {

using Libraries::Files::PDF::Document;
using Libraries::Files::PDF::errorText;
namespace Tools = Libraries::Files::PDF::Tools;

// page begin
struct Task {
    std::string name, from, to;
    Program::Opening how;
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

/// Rewrites one file; whatever it takes is made here and belongs to this thread alone. The target
/// is put in place when all of it was written, opens again and is sound. `NoError`, or the code of
/// what failed.
std::uint32_t rewrite(const Task& task, const Program::Saving& saving) {
    const auto source = Program::source(task.from, task.how); // a file, or what --any makes of it
    const auto document = source ? Document::create(source) : nullptr;
    if (!document) return Host::Error::get(); // of this thread
    document->faithfulNumbers(saving.faithful);
    for (const auto& loss : Tools::losses(*document))
        std::fprintf(stderr, "%s: warning: %s\n", task.name.c_str(), Tools::lossText(loss.kind));
    const bool saved = Tools::save(*document, task.to, saving.options) == Tools::Saved::Done;
    return saved ? Host::NoError : Host::Error::get();
}

/// What came of the tasks so far. Threads share it, hence the lock.
class Report {
public:
    explicit Report(std::size_t total) : total_(total) {}

    void add(const Task& task, std::uint32_t code) {
        const std::lock_guard guard(mutex_);
        std::printf("[%zu/%zu] %s: ", ++done_, total_, task.name.c_str());
        if (code == Host::NoError) {
            std::puts("ok");
        } else {
            std::printf("error %u (0x%X): %s\n", code, code, errorText(code));
            ++failed_;
            refused_ = refused_ || Program::isRefused(code);
        }
        std::fflush(stdout);
    }

    // When the threads are done:
    [[nodiscard]] std::size_t failed() const { return failed_; }
    [[nodiscard]] bool refused() const { return refused_; } // whether a file did not open

private:
    std::mutex mutex_;
    std::size_t total_, done_ = 0, failed_ = 0;
    bool refused_ = false;
};

/// Does all tasks on `threads` threads, this one included.
void rewriteAll(const std::vector<Task>& tasks, const Program::Saving& saving, std::size_t threads,
                Report& report) {
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t index = next++; index < tasks.size(); index = next++) {
            current = &tasks[index];
            report.add(*current, rewrite(*current, saving));
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

// The tasks for the files behind the folder; none where two would become one.
std::vector<Task> tasksOf(const Program::Arguments& arguments, const Program::Opening& how) {
    std::vector<Task> tasks;
    std::set<std::string> names;
    const std::filesystem::path folder = arguments[0];
    for (std::size_t index = 1; index < arguments.size(); ++index) {
        const std::string_view file = arguments[index];
        const std::string name = std::filesystem::path(file).filename().string();
        if (!names.insert(name).second) {
            std::fprintf(stderr, "batch: two files are named %s\n", name.c_str());
            return {};
        }
        tasks.push_back({name, std::string(file), (folder / name).string(), how});
    }
    return tasks;
}

} // namespace

int main(int argc, char** argv) {
    Program::Arguments arguments(argc, argv);
    const Program::Saving saving = Program::takeSaving(arguments);
    const Program::Opening how = arguments.takeOpening();
    const auto wanted = arguments.takeValue("-j").value_or("1");
    const std::size_t threads = Program::number<std::size_t>(wanted).value_or(0);
    if (threads == 0 || threads > 256 || arguments.take("-j") || arguments.size() < 2 ||
        !arguments.are(arguments.size()) || arguments[0].starts_with('-') || !saving.options.look) {
        return Program::usage(
            "batch [-j N] [--force] [--faithful] [--any [--password P]] FOLDER FILE...");
    }
    const std::vector<Task> tasks = tasksOf(arguments, how);
    if (tasks.empty()) return 2;
    std::error_code error;
    std::filesystem::create_directories(arguments[0], error);
    if (error) return Program::failure(Host::FileNotOpened);

    NamingPrinter printer;
    Host::LogPrinter& former = Host::SysLogStream::printer(printer);
    Report report(tasks.size());
    rewriteAll(tasks, saving, std::min(threads, tasks.size()), report);
    Host::SysLogStream::printer(former);
    const std::size_t failed = report.failed();
    std::printf("%zu files: %zu ok, %zu failed\n", tasks.size(), tasks.size() - failed, failed);
    const int status = Program::finishOutput();
    if (report.refused() && !how.any) Program::hint();
    return status != 0 || failed == 0 ? status : Program::failed;
}
