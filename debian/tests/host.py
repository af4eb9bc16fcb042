"""usage: host.py TRACE: how many messages there are, and the value of remote_ip in those that are start_rtp."""

import sys

import ztdecode

records = list(ztdecode.open_trace(sys.argv[1]))
addresses = [f", remote_ip = {record.fields['remote_ip']}" for record in records if record.message == "start_rtp"]
print(f"{len(records)} messages{''.join(addresses)}")
