// Every change of the value raises fractionvaluechanged with the old and the new parts.
var f = createfraction();
f.fractionvaluechanged.connect(function (oldsign, oldwhole, oldnumer, olddenom,
                                         newsign, newwhole, newnumer, newdenom) {
    print(oldsign, [oldwhole, oldnumer, olddenom], "->", newsign, [newwhole, newnumer, newdenom]);
});
f.changesign();             // two events: the change, then a summary whose old sign is empty
