#pragma once
// What is wrong with a file after ISO 10303-21, with the line and the instance where it stands.

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace kalvrooms::ifc {

// The number behind '#'; 0 is no instance.
using InstanceId = std::uint32_t;

class StepError : public std::runtime_error {
  public:
    StepError(const std::string& trouble, std::size_t line, InstanceId instance = 0)
        : std::runtime_error(
              (line ? "line " + std::to_string(line) + (instance ? ", " : ": ") : "") +
              (instance ? "#" + std::to_string(instance) + ": " : "") + trouble),
          line_(line), instance_(instance),
          trouble_((instance ? "#" + std::to_string(instance) + ": " : "") + trouble) {}

    std::size_t Line() const { return line_; }
    InstanceId Instance() const { return instance_; }
    // With the instance, without the line.
    const std::string& Trouble() const { return trouble_; }

  private:
    std::size_t line_;
    InstanceId instance_;
    std::string trouble_;
};

} // namespace kalvrooms::ifc
