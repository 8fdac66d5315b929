// The commands that only this caller knows, beside the calls themselves.
//
//   stats                    ->  stats heap=N ...   what the DLL holds (open_handles.h); the peak starts anew
//   count                    ->  count NAME=N ...   the imports called since the last calm
//   fail NAME N once|ever    ->  ok                 the Nth call from now of an import fails, or all from there
//   calm                     ->  calm N             no more faults; N calls were failed since the last calm
//   winsock N                ->  winsock N          the application starts Winsock N times; the starts that count now
//   hold FILE                ->  ok                 another program opens a file of this machine, for reading
//   release                  ->  ok                 and closes all of them
#pragma once

#include <istream>
#include <string>

namespace pavonix::device {

// The answer to a command, "" for one that is not known here.
std::string AnswerDeviceCommand(const std::string &command, std::istream &words);

} // namespace pavonix::device
