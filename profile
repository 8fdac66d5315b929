User-Agent: H/1
User-Serial: S1
User-Id: 42
