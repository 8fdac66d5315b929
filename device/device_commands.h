// The commands of the image runner besides the calls.
//
//   stats                    ->  stats heap=N ...   the DLL's open handles (open_handles.h); restarts the peak
//   count                    ->  count NAME=N ...   the imports called since the last calm
//   fail NAME N once|ever    ->  ok                 makes the Nth call of an import fail, or all from then on
//   calm                     ->  calm N             no more faults; N calls have failed since the last calm
//   winsock N                ->  winsock N          the application starts Winsock N times; its current starts
//   hold FILE                ->  ok                 another program opens a file of this machine for reading
//   release                  ->  ok                 and closes all of them
#pragma once

#include <istream>
#include <string>

namespace pavonix::device {

// Runs a command and returns its output, "" for an unknown command.
std::string RunDeviceCommand(const std::string &command, std::istream &words);

} // namespace pavonix::device
