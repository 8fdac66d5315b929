User-Agent: TestDevice/1.0
Public-Key: <RSAKeyValue><Modulus>7HMSS93/lm/XOalCm7hkHGUWUawHFEXfJMo+taGiXDfyRrdZiaOEz8hhNtumux0tfZuDEfa19INdfEeWgNQGxPCJDCvaJCdMZ5ESUvoApnTvGOUgWQMnnfvjgkpvINpfbugLHRUWyn4E//ZQpaHtLFDT1FKUO2OmI1JVCEPaOrk=</Modulus><Exponent>AQAB</Exponent></RSAKeyValue>
Private-Key: <RSAKeyValue><Modulus>7HMSS93/lm/XOalCm7hkHGUWUawHFEXfJMo+taGiXDfyRrdZiaOEz8hhNtumux0tfZuDEfa19INdfEeWgNQGxPCJDCvaJCdMZ5ESUvoApnTvGOUgWQMnnfvjgkpvINpfbugLHRUWyn4E//ZQpaHtLFDT1FKUO2OmI1JVCEPaOrk=</Modulus><Exponent>AQAB</Exponent><P>+aBqwWZgE9CnvY+a2LFEBi2gOMo14Qe8LJUqIvul1eeiLIg5nwiBEuV6Rsxfn7zu1KWaID0fqL3dOHluqFKNfw==</P><Q>8nyHCfznSFgZ89kh9+hzkeyvrX7I0UQv9EuJxv0m3dD+ks+vhbbmQ4jQLOajBLS9NjRZ0iT5Nhp/YCyc7lpDxw==</Q><DP>zxx41qPBHU+mjNGkMRvKi7G5WMT1NRK83uSYBFR0QGiiFn6kCD3/EZWSAUG6KQeRxJ7tpMfyB4gYDq450LBFsw==</DP><DQ>7ZlHWGoO1bw98cnYlumWFG4u1XldnG+L7Xv2zJxQ8RhP2drWydalWZc9JEH5iirvG6XAPUEtT+420S3lt0eLEQ==</DQ><InverseQ>I/LOCSbojyCZuGUtGWoGxa2m1pq9nxqu/CdEY1DDzcG/c3tAM+b7r09KsV+AmEVMZH9qgEg+rtNbrKZVbhhJKQ==</InverseQ></RSAKeyValue>
User-Serial: SERIAL-1
User-Id: 42
User-No: 7
