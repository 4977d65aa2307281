// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/checker.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <thread>
#include <utility>

namespace
{

// Hands out the inputs one by one to the working threads.
class Work
{
public:
    Work(const std::vector<CheckInput> &inputs, const FileCheckOptions &options)
        : m_inputs(inputs), m_options(options), m_results(inputs.size())
    {
    }

    // Checks the next file. Returns false if there is none.
    bool checkNext()
    {
        const std::size_t index = m_next.fetch_add(1, std::memory_order_relaxed);
        if (m_cancelled.load(std::memory_order_relaxed) || index >= m_inputs.size())
            return false;
        const CheckInput &input = m_inputs[index];
        m_results[index] = input.bytes ? checkBytes(input.name, *input.bytes, m_options)
                                       : checkFile(input.name, input.path, m_options);
        m_done.fetch_add(1, std::memory_order_relaxed);
        return true;
    }

    void cancel() { m_cancelled.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isCancelled() const { return m_cancelled.load(std::memory_order_relaxed); }
    [[nodiscard]] qsizetype done() const { return m_done.load(std::memory_order_relaxed); }
    // Call it when no thread works any more.
    [[nodiscard]] std::vector<FileResult> &results() { return m_results; }

private:
    const std::vector<CheckInput> &m_inputs;
    const FileCheckOptions &m_options;
    std::vector<FileResult> m_results;
    std::atomic<std::size_t> m_next = 0;
    std::atomic<qsizetype> m_done = 0;
    std::atomic<bool> m_cancelled = false;
};

} // namespace

QList<Finding> checkFiles(const std::vector<CheckInput> &inputs, const CheckOptions &options)
{
    Work work(inputs, options.file);
    const auto helpers = std::min<std::size_t>(inputs.size(), std::max(options.jobs, 1));
    std::vector<std::thread> threads;
    // This thread works too.
    for (std::size_t i = 1; i < helpers; ++i)
        threads.emplace_back([&work] {
            while (work.checkNext())
                ;
        });
    while (work.checkNext()) {
        if (options.progress && !options.progress(work.done()))
            work.cancel();
    }
    for (std::thread &thread : threads)
        thread.join();
    QList<Finding> findings;
    if (work.isCancelled())
        return findings;
    checkCollection(inputs, options.file, work.results());
    for (FileResult &result : work.results())
        findings.append(std::move(result.findings));
    return findings;
}
