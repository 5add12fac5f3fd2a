#pragma once
// The program that the host starts, with the hand-over file that it leaves beside it.

#include "practice/host/HandOver.h"

#include <windows.h>

#include <string>

namespace kalvrooms::practice {

class ClientProgram {
  public:
    ClientProgram() = default;
    ClientProgram(const ClientProgram&) = delete;
    ClientProgram& operator=(const ClientProgram&) = delete;
    ~ClientProgram();

    // Without a help file in the hand-over the one beside the program is meant. Raises a HostError
    // when the file cannot be written or the program cannot be started.
    void Start(const std::wstring& program, HandOver handOver);
    // The window gets the message with the program's exit code when it has ended.
    void TellWhenEnded(HWND window, UINT message);

  private:
    static void CALLBACK Ended(void* self, BOOLEAN timedOut);
    void Forget();

    HANDLE process_ = nullptr;
    HANDLE wait_ = nullptr;
    HWND window_ = nullptr;
    UINT message_ = 0;
};

} // namespace kalvrooms::practice
