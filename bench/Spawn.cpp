#include "Spawn.h"

#include "Clock.h"

#include <QByteArray>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

Finished runProgram(const QString &program, const QStringList &arguments, int timeoutMs) {
    Finished run;
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) {
        run.output = QStringLiteral("cannot make a pipe");
        return run;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fds[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fds[1], STDERR_FILENO);

    std::vector<std::string> args{program.toStdString()};
    for (const QString &argument : arguments)
        args.push_back(argument.toStdString());
    std::vector<char *> argv;
    for (std::string &arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);

    pid_t pid = 0;
    run.startedNs = benchclock::monotonicNs();
    const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    if (spawned != 0) {
        close(fds[0]);
        run.output = QStringLiteral("cannot start %1").arg(program);
        return run;
    }
    run.started = true;

    QByteArray bytes;
    for (;;) {
        pollfd in{fds[0], POLLIN, 0};
        const int ready = poll(&in, 1, timeoutMs);
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0) {
            run.timedOut = true;
            kill(pid, SIGKILL);
            break;
        }
        char buffer[4096];
        const ssize_t n = read(fds[0], buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        bytes.append(buffer, n);
    }
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    run.endedNs = benchclock::monotonicNs();
    if (WIFEXITED(status))
        run.exitCode = WEXITSTATUS(status);
    run.output = QString::fromLocal8Bit(bytes).trimmed();
    return run;
}
