-- For wrk: asks for one page a connection, as the devices do: the goods from the argument FIRST on, COUNT of them, one
-- after the other. At the end it prints requests a second, how many failed, and the latency in ms at the percentiles.
local first, count, number

function init(arguments)
  first, count, number = tonumber(arguments[1]), tonumber(arguments[2]), 0
end

function request()
  number = number + 1
  local path = "/shop/good?type=3&id=" .. (first + number % count)
  return wrk.format("GET", path, {["Connection"] = "close", ["User-Serial"] = "PX-1", ["User-ID"] = "1"})
end

function done(summary, latency)
  local failed = summary.errors.status + summary.errors.connect + summary.errors.read + summary.errors.write +
                 summary.errors.timeout
  print(string.format("RESULT %f %d", summary.requests / summary.duration * 1e6, failed))
  for _, p in ipairs({10, 25, 50, 75, 90, 95, 99, 99.5, 99.9}) do
    print(string.format("PERCENTILE %f %f", p, latency:percentile(p) / 1000))
  end
end
