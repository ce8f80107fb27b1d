#include "gateway_probe.h"

#include <netinet/icmp6.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

#include "connection_manager.h"
#include "handles.h"
#include "network/timer.h"

namespace network {
namespace {

constexpr double kPollSeconds = 0.25;
constexpr int kPollsForEachSend = 4;
constexpr double kLimitSeconds = 4.5;
constexpr std::uint16_t kClosedPort = 33434;  // where traceroute(8) expects nobody
constexpr std::size_t kPacketSize = 512;

sockaddr_in6 socketAddress(const Neighbour& gateway) {
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_addr = gateway.address;
    address.sin6_port = htons(kClosedPort);
    address.sin6_scope_id = IN6_IS_ADDR_LINKLOCAL(&gateway.address) ? gateway.interfaceIndex : 0;
    return address;
}

// A connected datagram socket on the gateway's interface, or an empty one.
Descriptor openSocket(const Neighbour& gateway, int protocol) {
    Descriptor made(socket(AF_INET6, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, protocol));
    if (!made) return made;
    // Kernels that refuse this to plain users choose the interface by their routes instead.
    const int index = static_cast<int>(gateway.interfaceIndex);
    (void)setsockopt(made.number(), SOL_SOCKET, SO_BINDTOIFINDEX, &index, sizeof index);
    const sockaddr_in6 address = socketAddress(gateway);
    if (connect(made.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return made;
    return Descriptor();
}

class GatewayProbe final : public Question {
  public:
    GatewayProbe(const Neighbour& gateway, Answer answer)
        : gateway_(gateway), answer_(std::move(answer)), started_(ecore_time_get()) {}

    bool start() {
        echo_ = openSocket(gateway_, IPPROTO_ICMPV6);
        datagram_ = openSocket(gateway_, IPPROTO_UDP);
        if (!echo_ && !datagram_) return false;
        send();
        if (const auto entry = neighbours_.find(gateway_)) neighbours_.verifyNow(gateway_, *entry);
        echoHandler_ = watch<&GatewayProbe::readEcho>(echo_);
        datagramHandler_ = watch<&GatewayProbe::readDatagram>(datagram_);
        return pollLater();
    }

  private:
    template <auto Read>
    FdHandler watch(const Descriptor& descriptor) {
        if (!descriptor) return nullptr;
        const auto thunk = [](void* data, Ecore_Fd_Handler*) -> Eina_Bool {
            (static_cast<GatewayProbe*>(data)->*Read)();
            return ECORE_CALLBACK_RENEW;
        };
        const auto flags = static_cast<Ecore_Fd_Handler_Flags>(ECORE_FD_READ | ECORE_FD_ERROR);
        return FdHandler(ecore_main_fd_handler_add(descriptor.number(), flags, thunk, this, nullptr, nullptr));
    }

    // A failure to send (no route yet, link down) is not final: the next turn may fare better.
    void send() {
        icmp6_hdr request{};
        request.icmp6_type = ICMP6_ECHO_REQUEST;
        request.icmp6_seq = htons(++sequence_);
        if (echo_) (void)::send(echo_.number(), &request, sizeof request, MSG_NOSIGNAL);
        if (datagram_) (void)::send(datagram_.number(), "", 0, MSG_NOSIGNAL);
    }

    // The kernel gives a ping socket only the replies to its own requests.
    void readEcho() {
        std::array<unsigned char, kPacketSize> packet;
        for (ssize_t size; (size = recv(echo_.number(), packet.data(), packet.size(), MSG_DONTWAIT)) >= 0;) {
            if (size > 0 && packet[0] == ICMP6_ECHO_REPLY) return finish(CONNECTION_ERROR_NONE);
        }
    }

    // "Port unreachable" arrives as a refused connection; only a living neighbour sends it.
    void readDatagram() {
        std::array<unsigned char, kPacketSize> packet;
        const bool answered = recv(datagram_.number(), packet.data(), packet.size(), MSG_DONTWAIT) >= 0;
        if (answered || errno == ECONNREFUSED) finish(CONNECTION_ERROR_NONE);
    }

    bool pollLater() {
        return timer_.start(kPollSeconds, [this] { poll(); });
    }

    void poll() {
        const double elapsed = ecore_time_get() - started_;
        const auto entry = neighbours_.find(gateway_);
        if (entry && confirmedWithin(*entry, std::chrono::milliseconds(static_cast<long>(elapsed * 1000)))) {
            return finish(CONNECTION_ERROR_NONE);
        }
        if (elapsed >= kLimitSeconds) return finish(CONNECTION_ERROR_NO_REPLY);
        if (++polls_ % kPollsForEachSend == 0) send();
        pollLater();
    }

    // The answer may destroy this question.
    void finish(int result) {
        timer_.stop();
        echoHandler_.reset();
        datagramHandler_.reset();
        const Answer answer = std::move(answer_);
        answer(result);
    }

    const Neighbour gateway_;
    Answer answer_;
    const double started_;
    int polls_ = 0;
    std::uint16_t sequence_ = 0;
    NeighbourTable neighbours_;
    // The handlers go before their descriptors.
    Descriptor echo_, datagram_;
    FdHandler echoHandler_, datagramHandler_;
    Timer timer_;
};

}  // namespace

int probeGateway(const std::optional<Neighbour>& gateway, Answer answer, std::unique_ptr<Question>& question) {
    if (!gateway) return CONNECTION_ERROR_INVALID_GATEWAY;
    auto probe = std::make_unique<GatewayProbe>(*gateway, std::move(answer));
    if (!probe->start()) return CONNECTION_ERROR_OPERATION_FAILED;
    question = std::move(probe);
    return CONNECTION_ERROR_NONE;
}

}  // namespace network
