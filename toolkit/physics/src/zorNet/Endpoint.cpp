#include <zorNet/Endpoint.h>

#include <charconv>
#include <stdexcept>

namespace zorNet {

namespace {

std::string const& checkHost(std::string const& host) {
  if (host.empty() || host.find_first_of(" \t\r\n[]") != std::string::npos) {
    throw std::invalid_argument("Endpoint: \"" + host + "\" is no host");
  }
  return host;
}

// "host:port" as both; a host in brackets may have colons of its own.
Endpoint parse(std::string const& text) {
  std::size_t const colon = text.rfind(':');
  zor::UInt16 port = 0;
  bool isRight = colon != std::string::npos;
  if (isRight) {
    auto const [end, error] = std::from_chars(text.data() + colon + 1, text.data() + text.size(), port);
    isRight = error == std::errc() && end == text.data() + text.size();
  }
  std::string host = text.substr(0, isRight ? colon : 0);
  bool const isBracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  if (isBracketed) {
    host = host.substr(1, host.size() - 2);
  }
  if (!isRight || (!isBracketed && host.find(':') != std::string::npos)) {
    throw std::invalid_argument("Endpoint: \"" + text + "\" is not host:port");
  }
  return Endpoint(host, port);
}

} // namespace

Endpoint::Endpoint(std::string const& host, zor::UInt16 port) : m_host(checkHost(host)), m_port(port) {}

Endpoint::Endpoint(std::string const& text) : Endpoint(parse(text)) {}

std::string Endpoint::str() const {
  bool const hasColon = m_host.find(':') != std::string::npos;
  return (hasColon ? "[" + m_host + "]" : m_host) + ":" + std::to_string(m_port);
}

} // namespace zorNet
