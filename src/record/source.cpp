#include "record/source.h"

#include "record/datagram_source.h"
#include "record/standard_input.h"
#include "record/tcp_source.h"

namespace record {

std::unique_ptr<Source> OpenSource(const Surroundings& surroundings)
{
    switch (surroundings.options.origin) {
        case Origin::kTcpListen:
            return std::make_unique<TcpListenSource>(surroundings);
        case Origin::kTcpConnect:
            return std::make_unique<TcpConnectSource>(surroundings);
        case Origin::kStandardInput:
            return std::make_unique<StandardInput>(surroundings);
        default:
            return std::make_unique<DatagramSource>(surroundings);
    }
}

}  // namespace record
