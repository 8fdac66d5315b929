-- For wrk: requests one page per connection, as the devices do. The arguments are FIRST, COUNT and KIND: COUNT pages in
-- sequence from FIRST on, of the kind good, list (five orders, the first 2,000 goods), deep (five orders, all goods) or
-- both (good and list alternately). Prints requests per second, failures, and latencies in ms at percentiles.
local first, count, kind, number

function init(arguments)
  first, count, kind, number = tonumber(arguments[1]), tonumber(arguments[2]), arguments[3], 0
end

function request()
  local page = first + number % count
  number = number + 1
  local list = "/shop/list?type=3&category=0&sort=%d&start=%d&max=%d"
  local path
  if kind == "deep" then
    path = string.format(list, page % 5, page, 10)
  elseif kind == "list" or (kind == "both" and page % 2 == 1) then
    path = string.format(list, page % 5, page % 2000, 10 + math.floor(page / 2000) % 20)
  else
    path = "/shop/good?type=3&id=" .. (10000 + page)
  end
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
