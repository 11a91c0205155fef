#pragma once

#include <memory>
#include <vector>

#include "record/source.h"
#include "record/stream_intake.h"

namespace record {

/// Standard input, whatever it is: a pipe, a terminal, a serial line, a file. Its end ends the recording.
class StandardInput final : public Source {
public:
    explicit StandardInput(const Surroundings& surroundings);

    void Finish() override { intake_.Finish(); }

private:
    StreamIntake::Outcome Read();
    void ReadFileOn();

    Surroundings around_;
    std::vector<char> buffer_;
    StreamIntake intake_;
    std::unique_ptr<platform::Watch> readable_;  // none for a file
};

}  // namespace record
