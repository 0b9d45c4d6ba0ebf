// SPDX-License-Identifier: BSD-3-Clause
// METIS 5.1 reaches beyond its arguments into what belongs to the whole process:
// - it seeds the C library's rand() and draws from it. Two calls at a time would disturb each other's order,
//   and the host would find its own stream of rand() restarted;
// - it catches SIGABRT and SIGTERM to get out of its own failures, and puts the handlers back without their
//   flags. A SIGTERM from outside would end in its handler.
//
// While an object of this class lives, no other thread has one, rand() has a state of its own, and SIGTERM
// waits; then all is as before. What cannot be kept from it: a thread of the host that calls rand() at this
// very time draws METIS's numbers and changes the order, and a SIGTERM may be given to another thread, which
// METIS's handler cannot leave in good order.
#pragma once

#include <csignal>
#include <cstdlib>
#include <mutex>

class ProcessState
{
public:
    ProcessState() : lock_(mutex())
    {
        sigset_t terminate;
        sigemptyset(&terminate);
        sigaddset(&terminate, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &terminate, &mask_);
        sigaction(SIGABRT, nullptr, &abort_);
        sigaction(SIGTERM, nullptr, &terminate_);
        host_ = initstate(1, own_, sizeof own_);
    }
    ~ProcessState()
    {
        setstate(host_);
        sigaction(SIGABRT, &abort_, nullptr);
        sigaction(SIGTERM, &terminate_, nullptr);
        pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
    }
    ProcessState(const ProcessState&) = delete;
    ProcessState& operator=(const ProcessState&) = delete;

private:
    static std::mutex& mutex()
    {
        static std::mutex only;
        return only;
    }

    std::lock_guard<std::mutex> lock_;
    sigset_t mask_;
    struct sigaction abort_, terminate_;
    char own_[128];
    char* host_;
};
