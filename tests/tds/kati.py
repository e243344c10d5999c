# A client of TDS 8 by hand: TLS first, with the protocol's name in it; inside PRELOGIN, LOGIN7 and a batch.
import socket
import ssl
import struct
import sys

PORT, PASSWORD = int(sys.argv[1]), sys.argv[2]


def connect(names, newest):
    context = ssl.create_default_context()
    context.check_hostname = False
    context.verify_mode = ssl.CERT_NONE
    context.maximum_version = newest
    if names:
        context.set_alpn_protocols(names)
    return context.wrap_socket(socket.create_connection(("127.0.0.1", PORT), 20))


def send(link, kind, data):
    link.sendall(struct.pack(">BBHHBB", kind, 1, len(data) + 8, 0, 1, 0) + data)


def exactly(link, size):
    data = b""
    while len(data) < size:
        part = link.recv(size - len(data))
        if not part:
            raise ConnectionError
        data += part
    return data


def receive(link):
    data = b""
    while True:
        header = exactly(link, 8)
        data += exactly(link, struct.unpack(">H", header[2:4])[0] - 8)
        if header[1] & 1:
            return data


def login():
    scrambled = bytes(((byte << 4 | byte >> 4) & 255) ^ 0xA5 for byte in PASSWORD.encode("utf-16le"))
    texts = [part.encode("utf-16le") for part in ("pc", "sa", "", "kati", "", "", "", "", "")]
    texts[2] = scrambled
    table, values = b"", b""
    for text in texts:
        table += struct.pack("<HH", 94 + len(values), len(text) // 2)
        values += text
    fixed = struct.pack("<IIIIIBBBBII", 0x08000000, 4096, 0, 1, 0, 0xE0, 3, 0, 0, 0, 0) + table
    fixed = fixed.ljust(90, b"\0")
    return struct.pack("<I", 94 + len(values)) + fixed + values


for newest in (ssl.TLSVersion.TLSv1_3, ssl.TLSVersion.TLSv1_2):
    with connect(["tds/8.0"], newest) as link:
        send(link, 18, bytes.fromhex("00000b0006" "0100110001" "ff" "090000000000") + b"\4")
        greeted = receive(link)
        send(link, 16, login())
        acknowledged = b"\x01\x08\0\0\0" in receive(link)
        statement = "SELECT 'tamam'".encode("utf-16le")
        send(link, 1, struct.pack("<IIHQI", 22, 18, 2, 0, 1) + statement)
        print(link.version(), link.selected_alpn_protocol(), greeted[-3], acknowledged, b"tamam" in receive(link))
for names in (["http/1.1"], None):
    try:
        with connect(names, ssl.TLSVersion.TLSv1_2) as link:
            send(link, 18, bytes.fromhex("ff"))
            print("accepted", receive(link))
    except OSError:
        print("refused")
