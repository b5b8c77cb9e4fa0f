// Import throughput on a large generated multi-dialect schema script:
// reports MB/s and the process's peak resident memory.
#include "ScriptGenerator.h"

#include <SQLAntlrParser/SQLAntlrParser.h>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

namespace {

double peakResidentMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;  // kilobytes on Linux
}

void reportCounters(benchmark::State &state, size_t bytes, size_t tables)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(bytes));
    state.counters["script_MB"] = static_cast<double>(bytes) / 1e6;
    state.counters["tables"] = static_cast<double>(tables);
    state.counters["peak_RSS_MB"] = peakResidentMegabytes();
}

void ImportGeneratedSchema(benchmark::State &state)
{
    const std::string script = bench::generateSchemaScript(static_cast<size_t>(state.range(0)) * 1000 * 1000);
    size_t tables = 0;
    for (auto _ : state) {
        SQLParser parser;
        std::unique_ptr<SQLContainer> model = parser.parseString(script);
        tables = model ? model->tables().size() : 0;
        benchmark::DoNotOptimize(model);
    }
    reportCounters(state, script.size(), tables);
}
BENCHMARK(ImportGeneratedSchema)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond)->Iterations(3);

void TokenizeGeneratedSchema(benchmark::State &state)
{
    const std::string script = bench::generateSchemaScript(static_cast<size_t>(state.range(0)) * 1000 * 1000);
    for (auto _ : state) {
        SQLParserC driver;
        benchmark::DoNotOptimize(driver.tokensForString(script));
    }
    reportCounters(state, script.size(), 0);
}
BENCHMARK(TokenizeGeneratedSchema)->Arg(10)->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace

BENCHMARK_MAIN();
