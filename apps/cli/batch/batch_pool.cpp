// Processes that share the rows of a batch.
// SPDX-License-Identifier: MIT

#include "batch/batch_pool.h"

#include "base/cancellation.h"
#include "batch/batch_process.h"
#include "batch/batch_worker.h"
#include "interrupt.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <poll.h>

namespace cli {

namespace {

using Clock = std::chrono::steady_clock;

class Pool {
public:
    Pool(BatchSource& source, const PoolOptions& options)
        : _source(source), _options(options), _workers(options.workers)
    {
    }
    ~Pool()
    {
        if (isBusy())
            drop();
    }
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    void run()
    {
        giveOut();
        while (isBusy()) {
            waitForAnswers();
            base::ThrowIfCancelled();
            endLateOnes();
            giveOut();
            for (Worker& worker : _workers)
                reply(worker);
        }
    }

private:
    struct Worker {
        std::unique_ptr<BatchProcess> process;
        std::optional<BatchTask> task;
        Clock::time_point begin;
        std::optional<std::vector<std::string>> saving; ///< what it asks for, and waits for the reply
        Clock::time_point askedAt;
        bool wasLate = false;
    };

    bool isBusy() const
    {
        return std::any_of(_workers.begin(), _workers.end(),
                           [](const Worker& worker) { return worker.task.has_value(); });
    }

    void giveOut()
    {
        for (Worker& worker : _workers)
            if (!worker.task)
                give(worker);
    }

    void give(Worker& worker)
    {
        std::optional<BatchTask> task = _source.next();
        if (!task)
            return;
        if (!worker.process)
            worker.process = std::make_unique<BatchProcess>(
                BatchWorkerArguments({_options.threads, _options.tellsProgress, _options.verbose}));
        worker.process->writeLine(Json{
            {"arguments", task->arguments},
            {"may_replace", task->mayReplace},
            {"own_files", task->ownFiles},
            {"wants_picture", _options.wantsPictures},
            {"dry_run",
             _options.isDryRun}}.dump());
        worker.task = std::move(task);
        worker.begin = Clock::now();
    }

    void waitForAnswers()
    {
        constexpr int moment = 100; // milliseconds, after which somebody may have asked to end
        for (const std::size_t i : withNews(moment))
            hear(_workers[i]);
    }

    void endLateOnes()
    {
        for (Worker& worker : _workers)
            if (_options.timeout.count() > 0 && worker.task && !worker.saving &&
                Clock::now() - worker.begin > _options.timeout) {
                worker.wasLate = true;
                worker.process->kill();
                bury(worker);
            }
    }

    std::vector<std::size_t> withNews(int milliseconds) const
    {
        std::vector<pollfd> wanted;
        for (const Worker& worker : _workers)
            wanted.push_back({worker.process ? worker.process->descriptor() : -1, POLLIN, 0});
        std::vector<std::size_t> found;
        if (poll(wanted.data(), wanted.size(), milliseconds) > 0)
            for (std::size_t i = 0; i < wanted.size(); ++i)
                if (wanted[i].revents != 0)
                    found.push_back(i);
        return found;
    }

    void hear(Worker& worker)
    {
        const bool isThere = worker.process->read();
        while (worker.process) {
            const std::optional<std::string> line = worker.process->nextLine();
            if (!line)
                break;
            takeLine(worker, *line);
        }
        if (!isThere && worker.process)
            bury(worker);
    }

    void takeLine(Worker& worker, const std::string& line)
    {
        BatchAnswer answer;
        answer.said = Json::parse(line);
        if (answer.said.contains("saving")) {
            worker.saving = answer.said["saving"].get<std::vector<std::string>>();
            worker.askedAt = Clock::now();
            reply(worker);
            return;
        }
        const double held = answer.said.at("held_mib").get<double>();
        answer.said.erase("held_mib");
        finish(worker, std::move(answer));
        if (held > _options.mostMebibytes)
            worker.process.reset();
    }

    void reply(Worker& worker)
    {
        if (!worker.saving)
            return;
        const std::optional<std::string> refusal = _source.beforeSaving(*worker.task, *worker.saving);
        if (!refusal)
            return;
        worker.saving.reset();
        worker.begin += Clock::now() - worker.askedAt; // to wait for other rows is no work
        worker.process->writeLine(Json{{"refusal", *refusal}}.dump());
    }

    void bury(Worker& worker)
    {
        BatchAnswer answer;
        answer.death = worker.process->waitForEnd();
        answer.wasLate = std::exchange(worker.wasLate, false);
        if (answer.wasLate)
            answer.death = fmt::format("the row was stopped after {} s", _options.timeout.count());
        worker.process.reset();
        if (InterruptSignal() == 0 && worker.task)
            finish(worker, std::move(answer));
    }

    void finish(Worker& worker, BatchAnswer answer)
    {
        worker.saving.reset();
        answer.seconds = std::chrono::duration<double>(Clock::now() - worker.begin).count();
        const BatchTask task = *std::exchange(worker.task, std::nullopt);
        _source.take(task, std::move(answer));
    }

    /// They put nothing more in place, and take away what they have begun.
    void drop()
    {
        constexpr std::chrono::seconds patience(3);
        for (const Worker& worker : _workers)
            if (worker.process)
                worker.process->askToEnd();
        const Clock::time_point end = Clock::now() + patience;
        const auto isThere = [](const Worker& worker) { return worker.process != nullptr; };
        while (std::any_of(_workers.begin(), _workers.end(), isThere)) {
            for (const std::size_t i : withNews(100)) {
                const bool goesOn = _workers[i].process->read();
                noteWritten(*_workers[i].process);
                if (!goesOn)
                    _workers[i].process.reset();
            }
            if (Clock::now() > end)
                for (const Worker& worker : _workers)
                    if (worker.process)
                        worker.process->kill();
        }
    }

    /// What they have put in place of rows that will not come to their end.
    static void noteWritten(BatchProcess& process)
    {
        while (const std::optional<std::string> line = process.nextLine()) {
            const Json said = Json::parse(*line);
            for (const Json& clause : said.value("written", Json::array()))
                NoteWritten(clause.get<std::string>());
        }
    }

    BatchSource& _source;
    const PoolOptions& _options;
    std::vector<Worker> _workers;
};

} // namespace

void RunPool(BatchSource& source, const PoolOptions& options)
{
    Pool(source, options).run();
}

} // namespace cli
