"""A server for timestamps (RFC 3161) on this machine. Prints its port and serves until it is terminated.

    timestamp_server.py FOLDER    FOLDER contains timestamps.pem and timestamps.key
"""
import http.server
import os
import pathlib
import subprocess
import sys

CONFIGURATION = """
[tsa]
default_tsa = signer
[signer]
serial = {folder}/timestamps.serial
signer_cert = {folder}/timestamps.pem
signer_key = {folder}/timestamps.key
certs = {folder}/timestamps.pem
default_policy = 1.2.3.4
digests = sha256, sha384, sha512
signer_digest = sha256
ess_cert_id_alg = sha256
"""


class Handler(http.server.BaseHTTPRequestHandler):
    folder = None

    def do_POST(self):
        query = self.folder / 'query.tsq'
        query.write_bytes(self.rfile.read(int(self.headers['Content-Length'])))
        command = ['openssl', 'ts', '-reply', '-config', self.folder / 'timestamps.conf', '-queryfile', query]
        reply = subprocess.run(command, check=True, capture_output=True).stdout
        self.send_response(200)
        self.send_header('Content-Type', 'application/timestamp-reply')
        self.send_header('Content-Length', str(len(reply)))
        self.end_headers()
        self.wfile.write(reply)

    def log_message(self, *_):
        pass


def main(folder):
    Handler.folder = pathlib.Path(folder)
    (Handler.folder / 'timestamps.conf').write_text(CONFIGURATION.format(folder=folder), encoding='utf-8')
    (Handler.folder / 'timestamps.serial').write_text('01\n', encoding='utf-8')
    with http.server.HTTPServer(('127.0.0.1', 0), Handler) as server:
        print(server.server_port, flush=True)
        server.serve_forever()


if __name__ == '__main__':
    sys.exit(main(os.path.abspath(sys.argv[1])))
