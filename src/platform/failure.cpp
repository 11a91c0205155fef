#include "platform/failure.h"

#include <new>
#include <utility>

namespace platform {

Failure::Failure(int number, std::string description) : number_(number), description_(std::move(description))
{}

Failure CurrentFailure()
{
    try {
        throw;
    } catch (const Failure& failure) {
        return failure;
    } catch (const std::bad_alloc&) {
        return {failure::kOutOfMemory, "Out of memory"};
    } catch (const std::exception& other) {
        return {failure::kInvalidCall, other.what()};
    } catch (...) {
        return {failure::kInvalidCall, "Unknown failure"};
    }
}

}  // namespace platform
