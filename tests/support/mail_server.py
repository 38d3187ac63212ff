"""An SMTP server on loopback for the tests; it keeps what it was given as a text that the standard library's mail
reader made of it.

    mail_server.py FOLDER [--address A] [--smtps | --starttls] [--certificate FILE] [--login USER PASSWORD]
                   [--refuse ADDRESS] [--refuse-message] [--silent-at STEP | --drop-at STEP]

It writes its address and port on standard output, mails to FOLDER/mail-1, -2, ..., and ends with standard input. The
steps are greeting, recipient, message and good-bye.
"""
import argparse
import asyncio
import email.policy
import email.utils
import logging
import pathlib
import socket
import ssl
import sys
import warnings
from email.header import decode_header, make_header

from aiosmtpd.smtp import SMTP, AuthResult


def described(envelope, login, is_secure):
    raw = envelope.original_content
    mail = email.message_from_bytes(raw, policy=email.policy.default)
    lines = raw.split(b"\r\n")
    yield f"tls: {'yes' if is_secure else 'no'}"
    yield f"login: {login}"
    yield f"sender: {envelope.mail_from}"
    yield from (f"told: {address}" for address in envelope.rcpt_tos)
    yield f"longest line below 999: {max(map(len, lines)) < 999}"
    yield "bare line ends: " + str(sum(line.count(b"\r") + line.count(b"\n") for line in lines))
    yield "defects: " + str(mail.defects)
    for name, value in mail.items():
        yield f"{name}: {value}"
    # This reader, unlike the one above, puts no blanks between the parts of a long name.
    plain = email.message_from_bytes(raw, policy=email.policy.compat32)
    for header in ("from", "to", "cc"):
        for name, address in email.utils.getaddresses(plain.get_all(header, [])):
            yield f"{header} is: {str(make_header(decode_header(name)))!r} {address}"
    body = mail.get_body(("plain",))
    yield f"text: {body.get_content()!r}"
    for part in mail.iter_attachments():
        content = part.get_payload(decode=True)
        yield f"attachment: {part.get_filename()!r} {part['content-type']} {len(content)} {content[:20]!r}"


class Keeper:
    def __init__(self, options):
        self.options = options
        self.count = 0

    async def misbehave(self, server, step):
        if self.options.silent_at == step:
            await asyncio.sleep(3600)
        if self.options.drop_at == step:
            server.transport.abort()
            raise ConnectionResetError

    async def handle_RCPT(self, server, session, envelope, address, options):
        await self.misbehave(server, "recipient")
        if address in self.options.refuse:
            return "550 5.1.1 Nobody of that name here"
        envelope.rcpt_tos.append(address)
        return "250 Well known"

    async def handle_DATA(self, server, session, envelope):
        await self.misbehave(server, "message")
        if self.options.refuse_message:
            return "554 5.7.1 No such mail"
        self.count += 1
        is_secure = server.transport.get_extra_info("ssl_object") is not None
        text = "\n".join(described(envelope, session.auth_data or "-", is_secure)) + "\n"
        (self.options.folder / f"mail-{self.count}").write_text(text, "utf-8")
        return "250 Kept as number " + str(self.count)

    async def handle_QUIT(self, server, session, envelope):
        await self.misbehave(server, "good-bye")
        return "221 Bye"


class Silent(asyncio.Protocol):
    def __init__(self, drops):
        self.drops = drops

    def connection_made(self, transport):
        if self.drops:
            transport.abort()


def read_options():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--address", default="127.0.0.1")
    parser.add_argument("--smtps", action="store_true")
    parser.add_argument("--starttls", action="store_true")
    parser.add_argument("--certificate")
    parser.add_argument("--login", nargs=2)
    parser.add_argument("--refuse", action="append", default=[])
    parser.add_argument("--refuse-message", action="store_true")
    parser.add_argument("--silent-at")
    parser.add_argument("--drop-at")
    return parser.parse_args()


def smtp_settings(options):
    settings = {"hostname": "mail.test", "decode_data": False}
    if options.starttls:
        settings["tls_context"] = tls_context(options)
    if options.login:
        def check(server, session, envelope, mechanism, data):
            given = [data.login.decode(), data.password.decode()]
            return AuthResult(success=given == options.login, handled=False, auth_data=data.login.decode())
        settings.update(authenticator=check, auth_required=True, auth_require_tls=False)
    return settings


def tls_context(options):
    context = ssl.create_default_context(ssl.Purpose.CLIENT_AUTH)
    context.load_cert_chain(options.certificate)
    return context


def outside_address():
    """An address of this machine that is not loopback; nothing is sent to find it."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        try:
            probe.connect(("192.0.2.1", 9))
            return probe.getsockname()[0]
        except OSError:
            print("none 0", flush=True)
            raise SystemExit


async def serve(options):
    keeper = Keeper(options)

    def protocol():
        if "greeting" in (options.silent_at, options.drop_at):
            return Silent(options.drop_at is not None)
        return SMTP(keeper, **smtp_settings(options))

    loop = asyncio.get_running_loop()
    if options.address == "outside":
        options.address = outside_address()
    tls = tls_context(options) if options.smtps else None
    server = await loop.create_server(protocol, options.address, 0, ssl=tls)
    print(options.address, server.sockets[0].getsockname()[1], flush=True)
    await loop.run_in_executor(None, sys.stdin.read)
    server.close()
    raise SystemExit  # whatever still talks


if __name__ == "__main__":
    logging.disable()
    warnings.simplefilter("ignore")
    asyncio.run(serve(read_options()))
