"""The internet behind the test router: answers NetworkManager's connectivity check, and ours, over IPv6 only."""
import http.server
import socket
import sys


class Answer(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        body = b"NetworkManager is online\n"
        self.send_response(302 if self.path == "/portal" else 200)
        self.send_header("X-NetworkManager-Status", "online")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)


class Ipv6Server(http.server.ThreadingHTTPServer):
    address_family = socket.AF_INET6


Ipv6Server((sys.argv[1], 80), Answer).serve_forever()
