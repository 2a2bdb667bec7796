#pragma once

#include <QString>

class Report;

// What a run measures and how often; `--quick` trades precision for time.
struct BenchOptions {
    QString programDir;   // where norvale-floor and norvale-startup are; the other
                          // programs are one folder up, at the top of the build
    int startupRuns = 21; // start-ups of each program
    int pauseRuns = 15;   // single pauses; tab changes on a live window
    int idleRuns = 3;     // idle stretches of idleSeconds each
    int idleSeconds = 10;
    int fileRepetitions = 9; // Google Benchmark repetitions per file figure
    int liveWindows = 7;     // measuring windows of the live test
    int liveWindowMs = 2000;
    int recorderPairs = 24; // windows with the recorder on and off, in pairs
    int recorderWindowMs = 500;
    int serialRuns = 7; // surveys over the line
    int cliRuns = 21;   // runs of norvale-cli and of `true` each
};

// Each section adds its rows to the report.
void benchStartup(Report &report, const BenchOptions &options);
void benchPause(Report &report, const BenchOptions &options);
void benchIdle(Report &report, const BenchOptions &options);
void benchFiles(Report &report, const BenchOptions &options);
void benchLiveTest(Report &report, const BenchOptions &options);
void benchSerial(Report &report, const BenchOptions &options);
void benchCli(Report &report, const BenchOptions &options);
