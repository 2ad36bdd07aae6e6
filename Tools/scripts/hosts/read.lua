-- read.lua SESSION [INDEX VALUE]...: loads a session of make.lua in a fresh process, prints the
-- plug-in's latency and what the host shows of its parameters, then sets some and saves.
local s = assert (load_session (arg[1], "t"), "no session")
local fx
for r in s:get_routes ():iter () do
  local i, p = 0
  repeat
    p = r:nth_plugin (i)
    i = i + 1
    if not p:isnil () then fx = p end
  until p:isnil ()
end
assert (fx, "no plug-in in the session")
local plugin = fx:to_insert ():plugin (0)
local function tell (...) print (table.concat ({...}, "\t")) end
tell ("PLUGIN", plugin:name (), "latency", fx:to_insert ():signal_latency ())
for i = 0, plugin:parameter_count () - 1 do
  local value = ARDOUR.LuaAPI.get_processor_param (fx, i, true)
  tell ("PARAM", i, plugin:parameter_label (i), value)
end
for i = 2, #arg, 2 do
  ARDOUR.LuaAPI.set_processor_param (fx, tonumber (arg[i]), tonumber (arg[i + 1]))
end
sleep (1)
if #arg > 1 then s:save_state ("") end
close_session ()
quit ()
